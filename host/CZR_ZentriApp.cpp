#include "host/CZR_ZentriApp.h"

#include <AcExtensionModule.h>
#include <aced.h>
#include <acutads.h>
#include <afxwin.h>
#include <rxmfcapi.h>
#include <tchar.h>

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QThread>
#include <memory>
#include <utility>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/ZR_ZentriCommands.h"
#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriPalette.h"
#include "host/ZR_ZentriPaletteSet.h"
#include "host/ZR_ZentriRetirement.h"
#include "host/ZR_ZentriSysReactor.h"
#include "host/core/ZR_ZentriCmdRecorder.h"
#include "host/core/ZR_ZentriHostLoop.h"
#include "host/core/ZR_ZentriLogger.h"
#include "host/core/ZR_ZentriModalScope.h"
#include "host/qtmfc/QMfcApp.h"

namespace {

constexpr DWORD kPaletteSetWindowStyle = 0x00400000;  // WS_DLGFRAME
constexpr DWORD kPaletteSetStyle = 0x2E;              // properties menu, auto roll-up, close button, snapping
constexpr DWORD kDockingStyle = 0x1004;               // CBRS_ALIGN_LEFT, CBRS_SIZE_DYNAMIC
constexpr DWORD kPaletteWindowStyle = 0x50000000;     // WS_CHILD, WS_VISIBLE
constexpr int kPaletteSetWidth = 700;
constexpr int kPaletteSetHeight = 500;
constexpr unsigned long kThreadStopMilliseconds = 5000;

/// The host remembers by this id where the panel is docked, so it must never change. Not a constant because
/// SetToolID() takes a pointer to a variable; static because the palette set may keep that pointer.
GUID g_paletteSetToolId = {0x6F2A9D84, 0x3B1C, 0x4E57, {0x9C, 0x0E, 0x81, 0x5D, 0x2B, 0xF7, 0x46, 0xA3}};

/// The host's editor object; null if the registry has none or another kind of object in its place.
AcEditor* editor() {
    AcRxObject* const object = acrxSysRegistry()->at(_T("AcEditor"));
    if (object == nullptr || !object->isA()->isDerivedFrom(AcEditor::desc())) {
        return nullptr;
    }
    return static_cast<AcEditor*>(object);
}

/// Attaches the reactor unless it is attached already.
void attach(AcEditorReactor* reactor, bool& attached) {
    AcEditor* const target = editor();
    if (target == nullptr || attached) {
        return;
    }
    target->addReactor(reactor);
    attached = true;
}

void detach(AcEditorReactor* reactor, bool& attached) {
    AcEditor* const target = editor();
    if (reactor != nullptr && target != nullptr) {
        target->removeReactor(reactor);
    }
    attached = false;
}

}  // namespace

AcRx::AppRetCode CZR_ZentriApp::On_kInitAppMsg(void* packet) {
    if (!QMfcApp::isUsable()) {
        acutPrintf(
            _T("\nZR_Zentri:Load failed, this process has a Qt application without widgets or on another ")
            _T("thread"));
        return AcRx::kRetError;
    }
    const AcRx::AppRetCode result = AcRxArxApp::On_kInitAppMsg(packet);
    // Restores the previous resource handle on every path out, exceptions included.
    CAcModuleResourceOverride resources;
    const ZR_ZentriModalScope busy;
    const unsigned unloads = m_unloads;

    // Before everything that may log, the worker threads above all, so that a log that cannot be created is
    // reported here.
    ZR_ZentriLogger::instance();
    registerZentriCommands();
    QApplication* const application = QMfcApp::mfc_instance(AfxGetApp());
    learnZentriHostLoops();
    // Qt calls it once, when the application ends.
    qRemovePostRoutine(&CZR_ZentriApp::applicationEnds);
    qAddPostRoutine(&CZR_ZentriApp::applicationEnds);
    loadFont();
    createThreads(application);
    createPalettes();
    if (m_unloads == unloads) {
        attachReactors();
    }
    return result;
}

AcRx::AppRetCode CZR_ZentriApp::On_kUnloadAppMsg(void* packet) {
    ++m_unloads;
    AcRxArxApp::On_kUnloadAppMsg(packet);
    removeZentriCommands();
    detachReactors();
    deletePaletteSet();
    stopChatThread();
    if (ZR_AiChatManager* const manager = ZR_AiChatManager::existingInstance()) {
        manager->forgetUser();
    }
    return AcRx::kRetOK;
}

void CZR_ZentriApp::loadFont() {
    // Qt keeps a copy of the file for every addApplicationFont(), even of the same font, until the
    // application is deleted, which never happens here.
    QStringList families = QFontDatabase::applicationFontFamilies(m_font);
    if (families.isEmpty() || families != m_fontFamilies) {
        m_font = QFontDatabase::addApplicationFont(QStringLiteral(":/res/font/SourceHanSansCN-Regular.ttf"));
        if (m_font == -1) {
            acutPrintf(_T("\nZR_Zentri:Load font failed"));
            return;
        }
        families = m_fontFamilies = QFontDatabase::applicationFontFamilies(m_font);
    }
    if (!families.isEmpty()) {
        QApplication::setFont(QFont(families.first()));
    }
}

void CZR_ZentriApp::createThreads(QApplication* application) {
    if (g_zentriChatThread == nullptr) {
        g_zentriChatThread = new ZR_AiChatCSThread(application);
    }
    if (g_zentriHistoryThread == nullptr) {
        g_zentriHistoryThread = new ZR_AiChatReadHistoricalChatThread(application);
    }
}

void CZR_ZentriApp::createPalettes() {
    if (g_zentriPaletteSet != nullptr) {
        return;
    }
    auto paletteSet = std::make_unique<ZR_ZentriPaletteSet>();
    const unsigned unloads = m_unloads;
    // While the window is created and docked, the module may be unloaded, or loaded once more. This set is
    // then not wanted any more.
    const auto wanted = [&] {
        return m_unloads == unloads && g_zentriPaletteSet == nullptr && paletteSet->GetSafeHwnd() != nullptr;
    };
    const CRect size(0, 0, kPaletteSetWidth, kPaletteSetHeight);
    if (!paletteSet->Create(_T("朔禾CAD Zentri"), kPaletteSetWindowStyle, size, acedGetAcadFrame(),
                            kPaletteSetStyle)) {
        zentriLog(_T("The palette set's window could not be created."));
        return;
    }
    if (!wanted()) {
        return;
    }
    paletteSet->SetToolID(&g_paletteSetToolId);
    paletteSet->EnableDocking(kDockingStyle);
    paletteSet->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    if (!wanted()) {
        return;
    }
    ZR_ZentriPaletteSet* const created = g_zentriPaletteSet = paletteSet.release();

    auto palette = std::make_unique<ZR_ZentriPalette>();
    if (!palette->Create(kPaletteWindowStyle, _T("朔禾 Zentri"), created, 0)) {
        zentriLog(_T("The palette's window could not be created."));
        return;
    }
    // Unloaded while the palette was created, the module has given the set up.
    if (g_zentriPaletteSet == created) {
        created->addPalette(std::move(palette));
    }
}

void CZR_ZentriApp::attachReactors() {
    if (g_zentriCmdRecorder == nullptr) {
        g_zentriCmdRecorder = new ZR_ZentriCmdRecorder;
    }
    attach(g_zentriCmdRecorder, m_recorderAttached);
    if (g_zentriSysReactor == nullptr) {
        g_zentriSysReactor = new ZR_ZentriSysReactor;
    }
    attach(g_zentriSysReactor, m_sysReactorAttached);
}

void CZR_ZentriApp::detachReactors() {
    detach(g_zentriCmdRecorder, m_recorderAttached);
    detach(g_zentriSysReactor, m_sysReactorAttached);
}

void CZR_ZentriApp::deletePaletteSet() {
    retirePaletteSet(std::exchange(g_zentriPaletteSet, nullptr));
}

void CZR_ZentriApp::stopChatThread() {
    stop(std::exchange(g_zentriChatThread, nullptr));
}

void CZR_ZentriApp::stop(QThread* thread) {
    if (thread == nullptr) {
        return;
    }
    thread->quit();
    if (thread->wait(kThreadStopMilliseconds)) {
        delete thread;
        return;
    }
    // The thread is blocked where quit() has no effect, for instance in its message box. Deleting a running
    // QThread aborts the process, so it is left to delete itself when it finishes; its code stays mapped.
    thread->setParent(nullptr);
    QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    if (thread->isFinished()) {
        delete thread;
    }
}

void CZR_ZentriApp::applicationEnds() {
    deletePaletteSet();
    if (!ZR_ZentriModalScope::anyOpen()) {
        deleteRetiredPaletteSets();
    }
    // The threads are children of the application and would be deleted with it.
    stopChatThread();
    stop(std::exchange(g_zentriHistoryThread, nullptr));
}
