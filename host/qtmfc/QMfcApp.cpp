#include "host/qtmfc/QMfcApp.h"

#include <windows.h>

#include <QAbstractEventDispatcher>
#include <QByteArray>
#include <QDir>
#include <QEvent>
#include <QPointer>
#include <QScopedValueRollback>
#include <QString>
#include <QStringList>
#include <QThread>
#include <QWidget>
#include <cstring>
#include <utility>
#include <vector>

#include "host/core/ZR_ZentriText.h"

CWinApp* QMfcApp::s_winApp = nullptr;
int QMfcApp::s_modalLoops = 0;

namespace {

// Event types for sendPostedEvents(). Qt 5 treats both values the same, see DeferredDeletes.
constexpr int kAllEvents = -1;
constexpr int kWithoutDeferredDeletes = 0;

/// Holds deferred deletes back while a plug-in's modal loop is counted. Qt 5 would execute those posted
/// before the loop began, whichever event type is passed to sendPostedEvents().
class DeferredDeletes : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() != QEvent::DeferredDelete || !QMfcApp::modalLoopRuns()) {
            return false;
        }
        m_objects.push_back(object);
        return true;
    }

    /// Posts them again, from within an event handler: posted outside of one, a deferred delete would wait
    /// for a Qt event loop.
    void resume() {
        QMetaObject::invokeMethod(
            this,
            [this] {
                for (const QPointer<QObject>& object : std::exchange(m_objects, {})) {
                    if (object != nullptr) {
                        object->deleteLater();
                    }
                }
            },
            Qt::QueuedConnection);
    }

private:
    std::vector<QPointer<QObject>> m_objects;
};

/// For the application of pluginInstance() only; null otherwise.
QPointer<DeferredDeletes> g_deferredDeletes;
HHOOK g_messageHook = nullptr;
/// QApplication keeps a reference to it.
int g_argumentCount = 0;

char* heapCopy(const QString& text) {
    const QByteArray bytes = text.toLocal8Bit();
    auto* const copy = new char[static_cast<std::size_t>(bytes.size()) + 1];
    std::memcpy(copy, bytes.constData(), static_cast<std::size_t>(bytes.size()) + 1);
    return copy;
}

/// The host's name and command line as an argument vector, which is never freed.
char** makeArguments(const CWinApp* mfcApp, int& count) {
    const QString line =
        toQString(CString(mfcApp->m_pszExeName)) + QLatin1Char(' ') + toQString(CString(mfcApp->m_lpCmdLine));
    const QStringList pieces = line.split(QLatin1Char(' '));
    auto** const arguments = new char*[static_cast<std::size_t>(pieces.size()) + 1];
    for (int i = 0; i < pieces.size(); ++i) {
        arguments[i] = heapCopy(pieces[i]);
    }
    arguments[pieces.size()] = nullptr;
    count = pieces.size();
    return arguments;
}

/// Keeps the code that contains this function mapped until the process ends.
void pinThisModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&g_messageHook), &module);
}

/// The folder of this module's file; empty when Windows does not tell.
QString moduleFolder() {
    HMODULE module = nullptr;
    TCHAR file[MAX_PATH] = {};
    if (GetModuleHandleExW(
            GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
            reinterpret_cast<LPCWSTR>(&g_messageHook), &module) == FALSE) {
        return QString();
    }
    const DWORD length = GetModuleFileNameW(module, file, MAX_PATH);
    if (length == 0 || length == MAX_PATH) {
        return QString();
    }
    const QString path = toQString(CString(file));
    return path.left(path.lastIndexOf(QLatin1Char('\\')) + 1);
}

/// Lets Qt find the plugins beside this module. By itself it searches the folders of QT_PLUGIN_PATH and
/// qt.conf and the program's folder, and without a platform plugin it ends the process. A module that has its
/// own plugins uses no others: those folders are the host's, and a plugin built with another Qt, the host's,
/// would bring that Qt's objects into this one. The constructor of QApplication adds the program's folder
/// again, so this is called before it and after it.
void findPluginsBesideThisModule() {
    const QString folder = moduleFolder();
    if (folder.isEmpty()) {
        return;
    }
    const QDir plugins(folder);
    if (plugins.exists(QStringLiteral("platforms"))) {
        QCoreApplication::setLibraryPaths({plugins.canonicalPath()});
    } else {
        QCoreApplication::addLibraryPath(folder);
    }
}

HWND topLevelAncestor(HWND window) {
    for (HWND parent = GetParent(window); parent != nullptr; parent = GetParent(parent)) {
        window = parent;
    }
    return window;
}

QWidget* widgetOf(const MSG* message) {
    return QWidget::find(reinterpret_cast<WId>(message->hwnd));
}

}  // namespace

bool QMfcApp::isUsable() {
    const QCoreApplication* const application = QCoreApplication::instance();
    return application == nullptr || (qobject_cast<const QApplication*>(application) != nullptr &&
                                      application->thread() == QThread::currentThread());
}

QApplication* QMfcApp::mfc_instance(CWinApp* mfcApp) {
    if (!isUsable()) {
        return nullptr;
    }
    // Even if another module has created the application: this module gives it children whose code is here.
    pinThisModule();
    if (QCoreApplication::instance() == nullptr) {
        s_winApp = mfcApp;
        findPluginsBesideThisModule();
        char** const arguments = makeArguments(mfcApp, g_argumentCount);
        new QMfcApp(mfcApp, g_argumentCount, arguments);
        findPluginsBesideThisModule();
    }
    return qApp;
}

bool QMfcApp::pluginInstance(HINSTANCE plugin) {
    if (QCoreApplication::instance() != nullptr) {
        return false;
    }

    const HOOKPROC deliverPostedEvents = [](int code, WPARAM wParam, LPARAM lParam) -> LRESULT {
        // With a negative code a hook may only pass the call on.
        if (code >= 0 && QCoreApplication::instance() != nullptr) {
            QCoreApplication::sendPostedEvents(nullptr,
                                               modalLoopRuns() ? kWithoutDeferredDeletes : kAllEvents);
        }
        return CallNextHookEx(g_messageHook, code, wParam, lParam);
    };
    // The hook of an earlier application that has been deleted still works.
    if (g_messageHook == nullptr) {
        g_messageHook = SetWindowsHookExW(WH_GETMESSAGE, deliverPostedEvents, nullptr, GetCurrentThreadId());
    }

    g_argumentCount = 0;
    auto* const application = new QApplication(g_argumentCount, nullptr);
    g_deferredDeletes = new DeferredDeletes(application);
    application->installEventFilter(g_deferredDeletes);

    if (plugin != nullptr) {
        char fileName[MAX_PATH] = {};
        if (GetModuleFileNameA(plugin, fileName, MAX_PATH) != 0) {
            LoadLibraryA(fileName);
        }
    }
    return true;
}

void QMfcApp::exitModalLoop() {
    --s_modalLoops;
    if (!modalLoopRuns() && g_deferredDeletes != nullptr) {
        g_deferredDeletes->resume();
    }
}

int QMfcApp::run(CWinApp* mfcApp) {
    const bool made = QCoreApplication::instance() == nullptr;
    QApplication* const application = mfc_instance(mfcApp);
    const int result = QApplication::exec();
    if (made) {
        delete application;
    }
    return result;
}

QMfcApp::QMfcApp(CWinApp* mfcApp, int& argc, char** argv) : QApplication(argc, argv) {
    s_winApp = mfcApp;
    // This has no effect in the host, where Qt's event loop is never entered. With run() the loop ends when
    // the last window closes.
    setQuitOnLastWindowClosed(true);
    QAbstractEventDispatcher::instance()->installNativeEventFilter(&m_eventFilter);
}

QMfcApp::~QMfcApp() {
    s_winApp = nullptr;
}

bool QMfcApp::winEventFilter(MSG* message, long* result) {
    static bool s_filtering = false;
    if (s_filtering) {
        return false;
    }
    const QScopedValueRollback<bool> filtering(s_filtering, true);

    if (widgetOf(message) != nullptr) {
        if (forwardMenuKey(message, result)) {
            return true;
        }
    } else {
        doIdleWork(message);
    }
    return s_winApp != nullptr && s_winApp->PreTranslateMessage(message) != FALSE;
}

bool QMfcApp::forwardMenuKey(MSG* message, long* result) {
    const bool altReleased = message->message == WM_SYSKEYUP && message->wParam == VK_MENU;
    const bool keyWithAlt = message->message == WM_SYSKEYDOWN && message->wParam != VK_MENU;
    if (!altReleased && !keyWithAlt) {
        return false;
    }
    QWidget* const widget = widgetOf(message);
    if (widget == nullptr) {
        return false;
    }
    const HWND ancestor = topLevelAncestor(message->hwnd);
    if (GetMenu(ancestor) == nullptr || GetFocus() != message->hwnd) {
        return false;
    }

    if (altReleased) {
        QWidget* const inner = widget->focusWidget();
        // The menu runs a message loop, during which the widget may be deleted.
        const QPointer<QWidget> focused = inner != nullptr ? inner : widget;
        SetFocus(ancestor);
        SendMessageW(ancestor, message->message, message->wParam, message->lParam);
        if (focused != nullptr) {
            // QWidget::setFocus() only moves the focus within its native window, so that window gets the
            // native focus first.
            SetFocus(message->hwnd);
            focused->setFocus(Qt::OtherFocusReason);
        }
    } else {
        SendMessageW(ancestor, message->message, message->wParam, message->lParam);
        SendMessageW(ancestor, WM_SYSKEYUP, VK_MENU, message->lParam);
    }
    if (result != nullptr) {
        *result = 0;
    }
    return true;
}

void QMfcApp::doIdleWork(MSG* message) {
    if (s_winApp == nullptr) {
        return;
    }
    MSG queued = {};
    while (m_doIdle && PeekMessageW(&queued, nullptr, 0, 0, PM_NOREMOVE) == FALSE) {
        if (s_winApp->OnIdle(m_idleCount++) == FALSE) {
            m_doIdle = false;
        }
    }
    if (s_winApp->IsIdleMessage(message) != FALSE) {
        m_doIdle = true;
        m_idleCount = 0;
    }
}
