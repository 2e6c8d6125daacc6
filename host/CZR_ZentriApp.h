#pragma once

#include <arxEntryPoint.h>

#include <QStringList>

class AcEditorReactor;
class QApplication;
class QThread;

/// The module's application object: creates the long-lived objects when the module is loaded and destroys
/// them in reverse order when it is unloaded. Each step tests what exists, so that a second initialisation
/// creates nothing twice. The Qt application, the history reader and the reactors are kept for the next load.
/// The module may be unloaded, and loaded again, from within any of its calls of the host that runs the
/// host's message loop. UI thread.
class CZR_ZentriApp : public AcRxArxApp {
public:
    /// kRetError, after a line on the host's command line, where the process has a Qt application that the
    /// module cannot use: nothing has been created then.
    AcRx::AppRetCode On_kInitAppMsg(void* packet) override;

    /// Stops a streaming answer; waits for its thread, but no longer than kThreadStopMilliseconds.
    AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override;

    /// Pure virtual in the base class; there is nothing to register.
    void RegisterServerComponents() override {}

private:
    void loadFont();
    void createThreads(QApplication* application);
    void createPalettes();
    void attachReactors();
    void detachReactors();
    static void deletePaletteSet();
    static void stopChatThread();
    static void stop(QThread* thread);
    /// Deletes what depends on the Qt application, which somebody else is about to delete.
    static void applicationEnds();

    /// Qt's id of the font added by the first load; -1 before.
    int m_font = -1;
    QStringList m_fontFamilies;
    /// How often the module has been unloaded. A call during which it changes has unloaded the module.
    unsigned m_unloads = 0;
    bool m_recorderAttached = false;
    bool m_sysReactorAttached = false;
};
