#pragma once

#include <arxEntryPoint.h>

#include <QStringList>

class AcEditorReactor;
class QApplication;

/// The module's application object: creates the long-lived objects when the module is loaded and destroys
/// them in reverse order when it is unloaded. Each step tests what exists, so that a second initialisation
/// creates nothing twice. The Qt application, the history reader and the reactors are kept for the next load.
/// UI thread.
class CZR_ZentriApp : public AcRxArxApp {
public:
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
    void deletePaletteSet();
    void stopChatThread();

    /// Qt's id of the font added by the first load; -1 before.
    int m_font = -1;
    QStringList m_fontFamilies;
    bool m_recorderAttached = false;
    bool m_sysReactorAttached = false;
};
