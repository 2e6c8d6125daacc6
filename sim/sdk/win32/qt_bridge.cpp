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

/// The parts of a pointer event of the X server's input extension that matter here, which has no installed
/// header.
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

/// The window in which a button went down, if the event says so; wheels are not buttons.
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

/// Lives as long as the application object.
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
    // Input is not shown on its way into a window: the port leaves that to the loop that has pumped it.
    const bool input = (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST) ||
                       (message.message >= WM_MOUSEFIRST && message.message <= WM_MOUSELAST);
    if (!input && dispatcher != nullptr &&
        dispatcher->filterNativeEvent("windows_generic_MSG", &filtered, &result)) {
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

// Qt hears of it when it next handles events, as on Windows: what is told while a widget just gets the focus
// must not take it away again underneath.
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

/// Makes Qt's idea of its active window agree with where the focus is now. The embedding protocol's own
/// messages would tell where it was when each of them was sent, and Qt takes back the focus on an outdated
/// one.
void QtBridge::followFocus() {
    const HWND focus = GetFocus();
    QWindow* window = findQtWindow(focus);
    if (window != nullptr && embeddedRoot(window) != nullptr) {
        if (QWidget* widget = QWidget::find(window->winId())) {
            QApplication::setActiveWindow(widget->window());
        }
        // The widget that got the focus by it may have given it away.
        if (GetFocus() == focus && QGuiApplication::focusWindow() != window) {
            window->requestActivate();
        }
        return;
    }
    const QWidget* active = QApplication::activeWindow();
    const QWindow* root = active != nullptr ? embeddedRoot(active->windowHandle()) : nullptr;
    // On Windows a click into a field need not bring Qt's window the focus, so Qt does not hear when a window
    // around it takes the keys to forward them: the field stays the focused one, with its caret.
    if (root != nullptr && IsChild(focus, toHwnd(root)) == FALSE) {
        QApplication::setActiveWindow(nullptr);
    }
}

void QtBridge::dispatchInForeignLoop(MSG& message) {
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    // The missing result is what tells a filter that nobody has dispatched the message yet.
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
    // Qt's X11 port writes its requests out on this signal, which only Qt's own loop sends.
    if (QCoreApplication* application = QCoreApplication::instance()) {
        if (QThread::currentThread() == application->thread()) {
            if (QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance()) {
                Q_EMIT dispatcher->aboutToBlock();
            }
        }
    }
}

// Qt's X11 port makes a window active on every click into it. On Windows a click does so only when it gives
// the focus to a widget, and buttons that take none leave the keyboard where it is. So the port is held back,
// and pressed() does what Windows does.
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
    // At the latest when Qt is through with the event: it may not deliver the click at all.
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
        followFocusLater();
        return false;
    }
    // The pointer does nothing in a disabled window, nor in the windows inside it.
    if (IsWindowEnabled(surroundingTopLevel(root)) == FALSE) {
        return true;
    }
    letActivate();
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick) {
        pressed(window, static_cast<QMouseEvent*>(event)->pos());
    }
    return false;
}
