#pragma once

#include <afxwin.h>

#include <QApplication>

#include "host/qtmfc/QMfcAppEventFilter.h"

/// The Qt application inside the host's MFC process. The host owns the only message loop; Qt's own is never
/// entered, Qt's events are delivered from the host's. UI thread.
class QMfcApp : public QApplication {
    Q_OBJECT

public:
    /// The process's Qt application, made when there is none yet. It is never deleted: other modules may have
    /// come to use it, and its windows outlive the module's. So this also keeps the module's code mapped for
    /// the rest of the process's life, whatever the host unloads.
    static QApplication* mfc_instance(CWinApp* mfcApp);

    /// The same for a plug-in of a host that is no MFC program: Qt's posted events are then delivered by a
    /// message hook. True when a Qt application was made.
    static bool pluginInstance(HINSTANCE plugin = nullptr);

    /// Runs Qt's loop, with a Qt application of its own when there is none yet; returns exec()'s result.
    static int run(CWinApp* mfcApp);

    // A plug-in's modal loops, which count: while one runs, objects that are to be deleted later stay. That
    // holds for the application of pluginInstance only.
    static void enterModalLoop() { ++s_modalLoops; }
    static void exitModalLoop();
    static bool modalLoopRuns() { return s_modalLoops > 0; }

    /// `argc` must live as long as the application, as QApplication demands.
    QMfcApp(CWinApp* mfcApp, int& argc, char** argv);
    ~QMfcApp() override;

    /// What MFC's message pump would do with a message that Qt's dispatcher pumps instead: menu keys, idle
    /// work, PreTranslateMessage. True when the message is dealt with; `result`, which may be null, is its
    /// result then. Called again from within itself it does nothing.
    bool winEventFilter(MSG* message, long* result);

private:
    /// Alt opens the menu bar of the host's frame although a Qt window has the focus.
    bool forwardMenuKey(MSG* message, long* result);
    void doIdleWork(MSG* message);

    static CWinApp* s_winApp;
    static int s_modalLoops;

    int m_idleCount = 0;
    bool m_doIdle = false;
    QMfcAppEventFilter m_eventFilter;
};
