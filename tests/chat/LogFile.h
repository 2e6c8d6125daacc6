#pragma once

#include <QString>
#include <QStringList>

/// The module's log in a test. The module keeps it beside the file it was loaded from, so a stand-in for that
/// file is loaded from a folder of this process's own.
class LogFile {
public:
    /// To be called before anything is logged.
    static void install();

    /// The messages of the entries written so far, without their stamps.
    static QStringList messages();
};
