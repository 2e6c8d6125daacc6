#include "host/ZR_ZentriPalette.h"

#include <QDebug>
#include <QVariant>
#include <QWindow>
#include <QtMath>
#include <exception>
#include <stdexcept>

#include "host/core/ZR_ZentriModalScope.h"
#include "host/core/ZR_ZentriText.h"
#include "view/ZR_ZentriPaletteView.h"

namespace {

constexpr const TCHAR* kUnknownFailure = _T("The chat view could not be embedded.");
constexpr int kMaxMessage = 512;

/// An MFC exception's message, or a general one if it has none.
CString messageOf(const CException& error) {
    TCHAR message[kMaxMessage] = {};
    return error.GetErrorMessage(message, kMaxMessage) != FALSE ? CString(message) : CString(kUnknownFailure);
}

}  // namespace

IMPLEMENT_DYNAMIC(ZR_ZentriPalette, CAdUiPalette)

BEGIN_MESSAGE_MAP(ZR_ZentriPalette, CAdUiPalette)
ON_WM_CREATE()
ON_WM_DESTROY()
ON_WM_SIZE()
ON_WM_SIZING()
ON_WM_LBUTTONDOWN()
ON_WM_KILLFOCUS()
ON_MESSAGE(ZR_ZentriPalette::kKeepFocusMessage, &ZR_ZentriPalette::OnAcadKeepFocus)
END_MESSAGE_MAP()

ZR_ZentriPalette::ZR_ZentriPalette() : m_view(std::make_unique<ZR_ZentriPaletteView>()) {
    // A top-level window is created with a frame, and Qt's Windows platform plugin still includes that
    // frame's margins after the window has been reparented into the palette: it would be misplaced and too
    // large.
    m_view->setWindowFlag(Qt::FramelessWindowHint);
    setZentriPaletteAccess(this);
}

ZR_ZentriPalette::~ZR_ZentriPalette() {
    // While this is still a whole object, so that OnDestroy() runs.
    DestroyWindow();
    if (zentriPaletteAccess() == this) {
        setZentriPaletteAccess(nullptr);
    }
}

void ZR_ZentriPalette::setColorTheme(int theme) {
    if (m_view != nullptr) {
        m_view->setColorTheme(theme);
    }
}

ZR_AiChatViewInterface* ZR_ZentriPalette::chatView() {
    return m_view.get();
}

void ZR_ZentriPalette::takeKeyboardFocus() {
    if (GetSafeHwnd() != nullptr) {
        SetFocus();
    }
}

ZR_ZentriPalette::FocusAnswer ZR_ZentriPalette::CanFrameworkTakeFocus() {
    // The host may take the focus back when the mouse moves over the drawing: a command can then be typed
    // after a look at the panel. It asks with WM_ACAD_KEEPFOCUS first, and there the panel keeps the focus
    // while the user types into it.
    return true;
}

BOOL ZR_ZentriPalette::PreTranslateMessage(MSG* message) {
    switch (message->message) {
        case WM_CHAR:
            // Characters are for the panel alone: the host would take them for a command.
            typeIntoView(*message);
            return TRUE;
        case WM_KEYDOWN:
            typeQueuedCharacters();
            forwardToView(*message);
            return CWnd::PreTranslateMessage(message);
        case WM_KEYUP:
            forwardToView(*message);
            return CWnd::PreTranslateMessage(message);
        default:
            return CWnd::PreTranslateMessage(message);
    }
}

int ZR_ZentriPalette::OnCreate(LPCREATESTRUCT creation) {
    return CAdUiPalette::OnCreate(creation) == -1 ? -1 : 0;
}

void ZR_ZentriPalette::OnDestroy() {
    // Destroying a window destroys its child windows. The view outlives this window, so it is detached
    // before.
    if (m_view != nullptr && m_view->windowHandle() != nullptr) {
        m_view->hide();
        m_view->windowHandle()->setParent(nullptr);
    }
    m_nativeParent.reset();
    CAdUiPalette::OnDestroy();
}

void ZR_ZentriPalette::OnSize(UINT type, int width, int height) {
    CAdUiPalette::OnSize(type, width, height);
    embedView();
}

void ZR_ZentriPalette::OnSizing(UINT, LPRECT) {}

void ZR_ZentriPalette::OnLButtonDown(UINT flags, CPoint point) {
    CAdUiPalette::OnLButtonDown(flags, point);
}

void ZR_ZentriPalette::OnKillFocus(CWnd* newFocus) {
    CAdUiPalette::OnKillFocus(newFocus);
    if (m_view != nullptr) {
        m_view->clearInputFocus();
    }
}

LRESULT ZR_ZentriPalette::OnAcadKeepFocus(WPARAM, LPARAM) {
    return m_view != nullptr && m_view->hasInputFocus() ? TRUE : FALSE;
}

void ZR_ZentriPalette::embedView() {
    if (m_view == nullptr) {
        return;
    }
    // Taking the focus and the message box may unload the module, which must not delete this object
    // meanwhile.
    const ZR_ZentriModalScope busy;
    try {
        placeView();
    } catch (const std::exception& error) {
        AfxMessageBox(toCString(QString::fromLocal8Bit(error.what())));
    } catch (CException* error) {
        const CString message = messageOf(*error);
        error->Delete();
        AfxMessageBox(message);
    } catch (...) {
        AfxMessageBox(kUnknownFailure);
    }
    if (GetSafeHwnd() == nullptr) {
        return;
    }
    CRect rect;
    GetWindowRect(&rect);
    // If something in the process has turned on Qt's scaling, a Qt pixel is larger than a pixel of the
    // window.
    const qreal scale = m_view->devicePixelRatioF();
    m_view->resize(qCeil(rect.Width() / scale), qCeil(rect.Height() / scale));
    m_view->relayoutMessages();
}

void ZR_ZentriPalette::placeView() {
    const HWND focusBefore = ::GetFocus();
    if (m_nativeParent == nullptr) {
        const WId handle = reinterpret_cast<WId>(GetSafeHwnd());
        m_nativeParent.reset(QWindow::fromWinId(handle));
        if (m_nativeParent == nullptr) {
            throw std::runtime_error("The window system cannot embed the chat view.");
        }
        m_nativeParent->setProperty("Qt_embedded_native_parent_handle",
                                    QVariant::fromValue(static_cast<qulonglong>(handle)));
    }
    m_view->winId();
    m_view->windowHandle()->setParent(m_nativeParent.get());
    // Not move(): that includes the frame margins that a platform plugin may assume even for an embedded
    // window.
    m_view->setGeometry(QRect(QPoint(0, 0), m_view->size()));
    m_view->show();
    // A hidden panel gets its size when the module is loaded, and whenever it is docked or its frame is
    // resized. What the user types then is for the host's command line, and the host does not put the focus
    // back, which Qt gives to the view's window when it embeds or shows it.
    if (IsWindowVisible()) {
        SetFocus();
    } else if (::GetFocus() != focusBefore) {
        ::SetFocus(focusBefore);
    }
}

void ZR_ZentriPalette::typeIntoView(const MSG& character) {
    qDebug().nospace() << "WM_CHAR||" << character.wParam << "||" << character.lParam;
    if (m_view != nullptr) {
        ::SendMessageW(viewHandle(), character.message, character.wParam, character.lParam);
    }
}

void ZR_ZentriPalette::typeQueuedCharacters() {
    MSG queued = {};
    // Peek first: WM_QUIT ignores the filter range.
    while (::PeekMessageW(&queued, GetSafeHwnd(), WM_CHAR, WM_CHAR, PM_NOREMOVE) != FALSE &&
           queued.message == WM_CHAR &&
           ::PeekMessageW(&queued, GetSafeHwnd(), WM_CHAR, WM_CHAR, PM_REMOVE) != FALSE) {
        typeIntoView(queued);
    }
}

void ZR_ZentriPalette::forwardToView(const MSG& message) {
    if (m_view == nullptr) {
        return;
    }
    const HWND view = viewHandle();
    // A message for the view itself gets here too, since MFC walks up all parent windows. It needs no
    // forwarding.
    if (message.hwnd == view || ::IsChild(view, message.hwnd) != FALSE) {
        return;
    }
    MSG quit = {};
    const bool quitting =
        ::PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE) != FALSE && quit.message == WM_QUIT;
    ::SendMessageW(view, message.message, message.wParam, message.lParam);
    // Looking for the next WM_CHAR, Qt removes WM_QUIT when no other message is queued.
    if (quitting) {
        ::PostQuitMessage(static_cast<int>(quit.wParam));
    }
}

HWND ZR_ZentriPalette::viewHandle() const {
    return reinterpret_cast<HWND>(m_view->winId());
}
