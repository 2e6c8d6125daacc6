#pragma once

#include <afxwin.h>

#include <QApplication>

#include "host/qtmfc/QMfcAppEventFilter.h"

/// The Qt application inside the host's MFC process. The host owns the only message loop: Qt's own event loop
/// is never entered, Qt's events are delivered from the host's loop. UI thread.
class QMfcApp : public QApplication {
    Q_OBJECT

public:
    /// Whether the process has no Qt application yet, or one that can be used here: a QApplication of this
    /// thread.
    static bool isUsable();

    /// The process's Qt application, created when there is none yet; null when isUsable() is false. It is
    /// never deleted: other modules may have started to use it, and it outlives this module. So this also
    /// keeps the module's code mapped until the process ends, even after the host has unloaded it.
    static QApplication* mfc_instance(CWinApp* mfcApp);

    /// The same for a plug-in of a host that is not an MFC program: a message hook delivers Qt's posted
    /// events. True when a Qt application has been created. Part of the interface; nothing in the module
    /// calls it.
    static bool pluginInstance(HINSTANCE plugin = nullptr);

    /// Runs Qt's event loop, with a Qt application of its own when there is none yet; returns exec()'s
    /// result. Part of the interface; nothing in the module calls it.
    static int run(CWinApp* mfcApp);

    // Counts a plug-in's modal loops: while one runs, deferred deletes are held back. Works only with the
    // application of pluginInstance(). Part of the interface; nothing in the module calls enterModalLoop()
    // and exitModalLoop().
    static void enterModalLoop() { ++s_modalLoops; }
    static void exitModalLoop();
    static bool modalLoopRuns() { return s_modalLoops > 0; }

    /// `argc` must live as long as the application, as QApplication demands.
    QMfcApp(CWinApp* mfcApp, int& argc, char** argv);
    ~QMfcApp() override;

    /// Does what MFC's message pump would do with a message that Qt's dispatcher pumps instead: menu keys,
    /// idle work, PreTranslateMessage. True when the message has been handled; `result`, which may be null,
    /// is then set to its result. A re-entrant call does nothing and returns false.
    bool winEventFilter(MSG* message, long* result);

private:
    /// Lets Alt open the menu bar of the host's frame while a Qt window has the focus.
    bool forwardMenuKey(MSG* message, long* result);
    void doIdleWork(MSG* message);

    static CWinApp* s_winApp;
    static int s_modalLoops;

    int m_idleCount = 0;
    bool m_doIdle = false;
    QMfcAppEventFilter m_eventFilter;
};
