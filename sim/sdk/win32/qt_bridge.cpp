#include "qt_bridge.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QThread>
#include <QWidget>
#include <QWindow>

namespace {

HWND toHwnd(const QWindow* window) {
    return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(window->winId()));
}

/// Qt's window of that handle; windows that Qt only knows of (QWindow::fromWinId) are not Qt's.
QWindow* findQtWindow(HWND handle) {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) {
        return nullptr;
    }
    const auto windows = QGuiApplication::allWindows();
    for (QWindow* window : windows) {
        // Without a native window yet, asking for the id would make one.
        if (window->handle() != nullptr && window->type() != Qt::ForeignWindow && toHwnd(window) == handle) {
            return window;
        }
    }
    return nullptr;
}

/// The window itself or the one around it that stands directly in a window of another maker; null when it is
/// in a top-level window of Qt.
QWindow* embeddedRoot(QWindow* window) {
    for (; window != nullptr; window = window->parent()) {
        if (window->parent() != nullptr && window->parent()->type() == Qt::ForeignWindow) {
            return window;
        }
    }
    return nullptr;
}

HWND surroundingTopLevel(const QWindow* embedded) {
    return GetAncestor(toHwnd(embedded->parent()), GA_ROOT);
}

bool isPointerEvent(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
            return true;
        default:
            return false;
    }
}

/// Whether a click there gives the focus to some widget, by Qt's own rule.
bool takesClickFocus(QWidget* root, const QPoint& position) {
    QWidget* widget = root->childAt(position);
    for (widget = widget != nullptr ? widget : root; widget != nullptr; widget = widget->parentWidget()) {
        const QWidget* focusTaker = widget->focusProxy() != nullptr ? widget->focusProxy() : widget;
        if (widget->isEnabled() && (focusTaker->focusPolicy() & Qt::ClickFocus) == Qt::ClickFocus) {
            return true;
        }
        if (widget->isWindow()) {
            break;
        }
    }
    return false;
}

/// Lives as long as the application object.
class ApplicationFilter : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool wanted =
            event->spontaneous() && (isPointerEvent(event->type()) || event->type() == QEvent::FocusIn);
        auto* window = wanted ? qobject_cast<QWindow*>(watched) : nullptr;
        return window != nullptr && QtBridge::instance().filterEvent(window, event);
    }
};

void startUp() {
    QtBridge::instance().attach();
}

const struct Registration {
    Registration() { win32SetForeignToolkit(&QtBridge::instance()); }
} g_registration;

}  // namespace

// Runs in the constructor of every application object.
Q_COREAPP_STARTUP_FUNCTION(startUp)

QtBridge& QtBridge::instance() {
    // Never destroyed: windows may still be closed when the process ends.
    static auto* const bridge = new QtBridge;
    return *bridge;
}

void QtBridge::attach() {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) {
        return;
    }
    QCoreApplication* application = QCoreApplication::instance();
    application->installEventFilter(new ApplicationFilter(application));
    qAddPostRoutine([] { QtBridge::instance().detach(); });
}

void QtBridge::detach() {
    m_keys = QtKeyMapper();
    m_expectedFocus = nullptr;
}

bool QtBridge::owns(HWND window) {
    return findQtWindow(window) != nullptr;
}

HWND QtBridge::parent(HWND handle) {
    const QWindow* window = findQtWindow(handle);
    const QWindow* above = window != nullptr ? window->parent(QWindow::IncludeTransients) : nullptr;
    return above != nullptr && above->handle() != nullptr ? toHwnd(above) : nullptr;
}

bool QtBridge::rectangle(HWND handle, RECT& screen) {
    const QWindow* window = findQtWindow(handle);
    if (window == nullptr) {
        return false;
    }
    const qreal scale = window->devicePixelRatio();
    const QPoint origin = window->mapToGlobal(QPoint(0, 0));
    screen.left = qRound(origin.x() * scale);
    screen.top = qRound(origin.y() * scale);
    screen.right = screen.left + qRound(window->width() * scale);
    screen.bottom = screen.top + qRound(window->height() * scale);
    return true;
}

LRESULT QtBridge::deliver(const MSG& message) {
    MSG filtered = message;
    long result = 0;
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    if (dispatcher != nullptr && dispatcher->filterNativeEvent("windows_generic_MSG", &filtered, &result)) {
        return result;
    }
    // The filter may have closed it.
    QWindow* window = findQtWindow(message.hwnd);
    if (window == nullptr) {
        return 0;
    }
    if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST) {
        m_keys.deliver(window, message);
    } else if (message.message == WM_CLOSE) {
        window->close();
    }
    return 0;
}

void QtBridge::focusChanged(HWND handle, bool focused) {
    QWindow* window = findQtWindow(handle);
    // That the focus has left is told by the embedding protocol alone: Qt has no public call for it.
    if (window != nullptr && focused && QGuiApplication::focusWindow() != window) {
        m_expectedFocus = handle;
        window->requestActivate();
    }
}

void QtBridge::dispatchInForeignLoop(MSG& message) {
    long result = 0;
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    if (dispatcher == nullptr ||
        !dispatcher->filterNativeEvent("windows_dispatcher_MSG", &message, &result)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void QtBridge::quitForeignLoop() {
    if (QCoreApplication::instance() != nullptr) {
        QCoreApplication::quit();
    }
}

void QtBridge::aboutToWait() {
    // Qt's X11 port writes its requests out on this signal, which only Qt's own loop sends.
    if (QCoreApplication* application = QCoreApplication::instance()) {
        if (QThread::currentThread() == application->thread()) {
            if (QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance()) {
                Q_EMIT dispatcher->aboutToBlock();
            }
        }
    }
}

void QtBridge::pressed(QWindow* window, const QPoint& position) {
    const QWindow* root = embeddedRoot(window);
    const HWND topLevel = surroundingTopLevel(root);
    if (GetActiveWindow() != topLevel) {
        SetActiveWindow(topLevel);
    }
    QWidget* widget = QWidget::find(window->winId());
    if (widget == nullptr || GetFocus() == toHwnd(root) || !takesClickFocus(widget, position)) {
        return;
    }
    // On Windows Qt counts as active as long as the window around it is, and takes the focus for its window
    // before the widget gets its own. Here it has to be made active for that.
    SetFocus(toHwnd(root));
    QApplication::setActiveWindow(widget->window());
}

bool QtBridge::filterEvent(QWindow* window, QEvent* event) {
    const QWindow* root = embeddedRoot(window);
    if (root == nullptr) {
        return false;
    }
    if (event->type() == QEvent::FocusIn) {
        const HWND handle = toHwnd(root);
        if (m_expectedFocus == handle) {
            m_expectedFocus = nullptr;
        } else if (GetFocus() != handle) {
            // Qt made its window active by itself, which on Windows moves the focus there.
            SetFocus(handle);
        }
        return false;
    }
    // The pointer does nothing in a disabled window, nor in the windows inside it.
    if (IsWindowEnabled(surroundingTopLevel(root)) == FALSE) {
        return true;
    }
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick) {
        pressed(window, static_cast<QMouseEvent*>(event)->pos());
    }
    return false;
}
