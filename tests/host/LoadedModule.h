#pragma once

#include <AdUiPaletteSet.h>

#include <QString>

#include "tests/support/TestProgram.h"

class QListWidget;
class QWidget;

/// The module as it is shipped, seen from a host with real windows and a signed-in user. The destructor
/// unloads it.
class LoadedModule {
public:
    explicit LoadedModule(const QString& file = builtFile());
    ~LoadedModule();
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    /// The module file that the build has produced.
    static QString builtFile();
    static const ACHAR* name();

    bool load();
    static bool unload();
    /// Runs a registered command; false when there is none of that name.
    static bool run(const ACHAR* command);
    /// Opens the panel and waits until the user's sessions have been read and a question may be asked.
    bool openPanel();
    /// True when no worker thread of the module runs.
    static bool isIdle();
    /// Types a question and sends it.
    static void ask(const QString& question);
    /// Waits until part of the answer to the last question is visible. That is seen from the height of its
    /// bubble, so the answer must have more than one line.
    static bool waitForAnswer();

    /// Number of control bars in the host's frame.
    int bars() const;
    /// Null while the module is not loaded.
    CAdUiPaletteSet* paletteSet() const;
    /// Null while the module is not loaded.
    static QWidget* view();
    static QListWidget* chatList();

    TestProgram program;

private:
    QString m_file;
};
