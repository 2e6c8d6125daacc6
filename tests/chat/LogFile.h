#pragma once

#include <QString>
#include <QStringList>

/// The module's log in a test. The module writes it next to its own file, so a stand-in for that file is
/// loaded from a temporary folder.
class LogFile {
public:
    /// Must be called before anything is logged.
    static void install();

    /// The messages of the entries written so far, without their stamps.
    static QStringList messages();
    /// The file's size in bytes.
    static qint64 size();
};
