#pragma once

#include <QString>

/// While it lives, what is written to the file does not fit; opening and reading it go on as before. Where
/// that takes another file in its place, the former one comes back.
class FullDisk {
public:
    explicit FullDisk(const QString& file);
    ~FullDisk();
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    QString m_file;
};
