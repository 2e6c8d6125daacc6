#pragma once

#include <arxEntryPoint.h>

#include <QStringList>

class AcEditorReactor;
class QApplication;

/// The module as the host's loader sees it: makes the long-lived objects when the module is loaded and takes
/// them away, in reverse order, when it is unloaded. Each step tests what exists, so that a second
/// initialisation makes nothing twice; the Qt application, the history reader and the reactors stay for the
/// next load. UI thread.
class CZR_ZentriApp : public AcRxArxApp {
public:
    AcRx::AppRetCode On_kInitAppMsg(void* packet) override;

    /// Stops a streaming answer, for which it waits at most 5 seconds.
    AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override;

    void RegisterServerComponents() override {}

private:
    void loadFont();
    void createThreads(QApplication* application);
    void createPalettes();
    void attachReactors();
    void detachReactors();
    void deletePaletteSet();
    void stopChatThread();

    /// As Qt knows the font that an earlier load added; -1 before.
    int m_font = -1;
    QStringList m_fontFamilies;
    bool m_recorderAttached = false;
    bool m_sysReactorAttached = false;
};
