#include "qt_bridge.h"

#include <QAbstractEventDispatcher>
#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QMouseEvent>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include <xcb/xcb.h>

namespace {

HWND toHwnd(const QWindow* window) {
    return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(window->winId()));
}

/// The QWindow with this handle; null also for a foreign window that Qt has wrapped (QWindow::fromWinId).
QWindow* findQtWindow(HWND handle) {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) {
        return nullptr;
    }
    const auto windows = QGuiApplication::allWindows();
    for (QWindow* window : windows) {
        // winId() would create the native window if there is none yet.
        if (window->handle() != nullptr && window->type() != Qt::ForeignWindow && toHwnd(window) == handle) {
            return window;
        }
    }
    return nullptr;
}

/// The window itself or its ancestor whose parent is a foreign window; null when the top-level window is
/// Qt's.
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

/// Whether a click there gives a widget the focus, by the rule that QApplication uses.
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

/// The first fields of an XInput 2 pointer event. Declared here so that the build needs no XInput headers.
struct ExtensionButtonEvent {
    std::uint8_t responseType;
    std::uint8_t extension;
    std::uint16_t sequence;
    std::uint32_t length;
    std::uint16_t eventType;
    std::uint16_t device;
    std::uint32_t time;
    std::uint32_t button;
    xcb_window_t root;
    xcb_window_t window;
};
constexpr std::uint16_t kExtensionButtonPress = 4;
constexpr std::uint32_t kLastRealButton = 3;

/// The window of a button press, XCB_NONE for any other event; wheel steps (buttons 4 and up) do not count.
xcb_window_t pressedWindow(const void* event) {
    const auto type = static_cast<const xcb_generic_event_t*>(event)->response_type & 0x7F;
    if (type == XCB_BUTTON_PRESS) {
        const auto* press = static_cast<const xcb_button_press_event_t*>(event);
        return press->detail <= kLastRealButton ? press->event : xcb_window_t{XCB_NONE};
    }
    if (type == XCB_GE_GENERIC) {
        const auto* press = static_cast<const ExtensionButtonEvent*>(event);
        if (press->eventType == kExtensionButtonPress && press->button <= kLastRealButton) {
            return press->window;
        }
    }
    return XCB_NONE;
}

/// Owned by the application object.
class ApplicationFilter : public QObject, public QAbstractNativeEventFilter {
public:
    using QObject::QObject;

    bool nativeEventFilter(const QByteArray& type, void* message, long*) override {
        if (type == "xcb_generic_event_t") {
            QtBridge::instance().filterServerEvent(message);
        }
        return false;
    }

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
} kRegistration;

}  // namespace

// Runs in the constructor of every QCoreApplication.
Q_COREAPP_STARTUP_FUNCTION(startUp)

QtBridge& QtBridge::instance() {
    // Never destroyed: windows may still be closed during static destruction.
    static auto* const bridge = new QtBridge;
    return *bridge;
}

void QtBridge::attach() {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) {
        return;
    }
    QCoreApplication* application = QCoreApplication::instance();
    auto* filter = new ApplicationFilter(application);
    application->installEventFilter(filter);
    application->installNativeEventFilter(filter);
    qAddPostRoutine([] { QtBridge::instance().detach(); });
}

void QtBridge::detach() {
    m_keys = QtKeyMapper();
    m_heldBack = nullptr;
    m_followQueued = false;
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
    // As in Qt's Windows port, the window procedure does not pass input through the native event filters: the
    // event loop that retrieved the message has done so.
    const bool input = (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST) ||
                       (message.message >= WM_MOUSEFIRST && message.message <= WM_MOUSELAST);
    if (!input && dispatcher != nullptr &&
        dispatcher->filterNativeEvent("windows_generic_MSG", &filtered, &result)) {
        return result;
    }
    // Look the window up only now: the filter may have closed it.
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

// Deferred to Qt's event loop, as on Windows: a notification while a widget is just gaining the focus must
// not take it away again.
void QtBridge::focusChanged(HWND, bool) {
    followFocusLater();
}

void QtBridge::followFocusLater() {
    if (!m_followQueued && QCoreApplication::instance() != nullptr) {
        m_followQueued = true;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [this] {
                m_followQueued = false;
                followFocus();
            },
            Qt::QueuedConnection);
    }
}

/// Synchronizes Qt's active window with the current focus. XEMBED messages would carry the focus at the time
/// each was sent, and on an outdated one Qt would grab the focus again.
void QtBridge::followFocus() {
    const HWND focus = GetFocus();
    QWindow* window = findQtWindow(focus);
    if (window != nullptr && embeddedRoot(window) != nullptr) {
        if (QWidget* widget = QWidget::find(window->winId())) {
            QApplication::setActiveWindow(widget->window());
        }
        // The widget that was focused by this may have passed the focus on.
        if (GetFocus() == focus && QGuiApplication::focusWindow() != window) {
            window->requestActivate();
        }
        return;
    }
    const QWidget* active = QApplication::activeWindow();
    const QWindow* root = active != nullptr ? embeddedRoot(active->windowHandle()) : nullptr;
    // On Windows a click into a text field need not move the native focus to Qt's window, so Qt is not
    // notified either when a window around it takes the keys in order to forward them: the field keeps Qt's
    // focus and its caret.
    if (root != nullptr && IsChild(focus, toHwnd(root)) == FALSE) {
        QApplication::setActiveWindow(nullptr);
    }
}

void QtBridge::dispatchInForeignLoop(MSG& message) {
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    // A null result pointer tells the filters that the message has not been dispatched yet.
    if (dispatcher == nullptr || !dispatcher->filterNativeEvent("windows_generic_MSG", &message, nullptr)) {
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
    // Qt's xcb plugin flushes its connection on this signal, which only Qt's own event loop emits.
    if (QCoreApplication* application = QCoreApplication::instance()) {
        if (QThread::currentThread() == application->thread()) {
            if (QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance()) {
                Q_EMIT dispatcher->aboutToBlock();
            }
        }
    }
}

// Qt's xcb plugin activates a window on every click into it. On Windows a click does so only if a widget
// takes the focus; one that does not, such as a button, leaves the keyboard focus where it is. So the plugin
// is kept from activating the window, and pressed() does what Windows does.
void QtBridge::filterServerEvent(const void* event) {
    const xcb_window_t id = pressedWindow(event);
    QWindow* window =
        id != XCB_NONE ? findQtWindow(reinterpret_cast<HWND>(static_cast<std::uintptr_t>(id))) : nullptr;
    if (window == nullptr || embeddedRoot(window) == nullptr || QGuiApplication::focusWindow() == window ||
        window->flags().testFlag(Qt::WindowDoesNotAcceptFocus)) {
        return;
    }
    letActivate();
    m_heldBack = window;
    window->setFlag(Qt::WindowDoesNotAcceptFocus);
    // Reset it at the latest after Qt has processed the event, which it may not deliver at all.
    QTimer::singleShot(0, window, [this] { letActivate(); });
}

void QtBridge::letActivate() {
    if (m_heldBack != nullptr) {
        m_heldBack->setFlag(Qt::WindowDoesNotAcceptFocus, false);
        m_heldBack = nullptr;
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
    // On Windows Qt's window counts as active while the top-level window around it is, and gets the native
    // focus before the widget gets Qt's. Here it has to be activated explicitly for that.
    SetFocus(toHwnd(root));
    QApplication::setActiveWindow(widget->window());
}

bool QtBridge::filterEvent(QWindow* window, QEvent* event) {
    const QWindow* root = embeddedRoot(window);
    if (root == nullptr) {
        return false;
    }
    if (event->type() == QEvent::FocusIn) {
        followFocusLater();
        return false;
    }
    // A disabled window receives no pointer input, nor do the windows inside it.
    if (IsWindowEnabled(surroundingTopLevel(root)) == FALSE) {
        return true;
    }
    letActivate();
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick) {
        pressed(window, static_cast<QMouseEvent*>(event)->pos());
    }
    return false;
}
