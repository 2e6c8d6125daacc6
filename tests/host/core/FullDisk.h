#pragma once

#include <QString>

/// While it exists, writing to the file fails as on a full disk; the file can still be opened and read. If
/// another file has to take its place for that, the original is restored.
class FullDisk {
public:
    explicit FullDisk(const QString& file);
    ~FullDisk();
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    QString m_file;
};
