// Message boxes: each is a window with a modal message loop.

#include "win32_message_box.h"

#include "win32_paint.h"
#include "win32_queue.h"
#include "win32_support.h"
#include "win32_window.h"

#include <algorithm>
#include <utility>

namespace win32 {

namespace {

constexpr int kMargin = 20;
constexpr int kIconSize = 36;
constexpr int kIconGap = 16;
constexpr int kTextWidth = 420;
constexpr int kSmallestWidth = 260;
constexpr int kButtonWidth = 86;
constexpr int kButtonHeight = 28;
constexpr int kButtonGap = 10;
constexpr int kButtonBar = kButtonHeight + 2 * 12;
constexpr double kFullTurn = 6.283185307179586;
constexpr LPCWSTR kBoxClass = u"#32770";

struct ButtonKind {
    int id;
    LPCWSTR text;
};

// The button texts of Chinese Windows, on which the host runs.
constexpr ButtonKind kOk = {IDOK, u"确定"};
constexpr ButtonKind kCancel = {IDCANCEL, u"取消"};
constexpr ButtonKind kAbort = {IDABORT, u"中止(&A)"};
constexpr ButtonKind kRetry = {IDRETRY, u"重试(&R)"};
constexpr ButtonKind kIgnore = {IDIGNORE, u"忽略(&I)"};
constexpr ButtonKind kYes = {IDYES, u"是(&Y)"};
constexpr ButtonKind kNo = {IDNO, u"否(&N)"};

std::vector<ButtonKind> buttonsOf(UINT type) {
    switch (type & MB_TYPEMASK) {
        case MB_OK:
            return {kOk};
        case MB_OKCANCEL:
            return {kOk, kCancel};
        case MB_ABORTRETRYIGNORE:
            return {kAbort, kRetry, kIgnore};
        case MB_YESNOCANCEL:
            return {kYes, kNo, kCancel};
        case MB_YESNO:
            return {kYes, kNo};
        case MB_RETRYCANCEL:
            return {kRetry, kCancel};
        default:
            unsupported("MessageBox", "an unknown button type (MB_TYPEMASK)");
    }
}

struct Button {
    int id;
    std::u16string text;
    RECT place;
};

class MessageBoxSession;
std::vector<MessageBoxSession*>& sessions() {
    static std::vector<MessageBoxSession*> open;
    return open;
}

class MessageBoxSession {
public:
    MessageBoxSession(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
    ~MessageBoxSession();
    MessageBoxSession(const MessageBoxSession&) = delete;
    MessageBoxSession& operator=(const MessageBoxSession&) = delete;

    int run();
    HWND window() const { return m_window; }
    OpenBox describe() const;
    bool hasButton(int id) const;
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);

private:
    void layOut();
    void disableOthers();
    void paint();
    void paintIcon(cairo_t* cairo, const RECT& place) const;
    void choose(int id);
    void cancel();
    bool key(int virtualKey);

    HWND m_owner = nullptr;
    HWND m_window = nullptr;
    std::u16string m_text;
    std::u16string m_caption;
    UINT m_type;
    std::vector<Button> m_buttons;
    std::vector<HWND> m_disabled;
    RECT m_textPlace{};
    SIZE m_size{};
    int m_focused = 0;
    int m_pressed = -1;
    int m_result = 0;
};

LRESULT CALLBACK boxProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    for (MessageBoxSession* session : sessions()) {
        if (session->window() == window) {
            return session->handle(message, wParam, lParam);
        }
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void registerBoxClass() {
    static const bool registered = [] {
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.lpfnWndProc = boxProcedure;
        description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        description.lpszClassName = kBoxClass;
        return RegisterClassExW(&description) != 0;
    }();
    static_cast<void>(registered);
}

MessageBoxSession::MessageBoxSession(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type)
    : m_text(text != nullptr ? text : u""),
      // The default caption, "Error", as on Chinese Windows.
      m_caption(caption != nullptr ? caption : u"错误"),
      m_type(type) {
    if (const Window* topLevel = topLevelOf(owner)) {
        m_owner = topLevel->handle;
    }
    for (const ButtonKind& kind : buttonsOf(type)) {
        m_buttons.push_back({kind.id, kind.text, {}});
    }
    const auto chosen = static_cast<int>((type & MB_DEFMASK) >> 8);
    m_focused = chosen < static_cast<int>(m_buttons.size()) ? chosen : 0;

    registerBoxClass();
    layOut();
    const DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU;
    RECT frame = {0, 0, m_size.cx, m_size.cy};
    AdjustWindowRectEx(&frame, style, FALSE, 0);
    const int width = frame.right - frame.left;
    const int height = frame.bottom - frame.top;
    RECT around = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    if (m_owner != nullptr) {
        GetWindowRect(m_owner, &around);
    }
    const int x = std::max(0, (around.left + around.right - width) / 2);
    const int y = std::max(0, (around.top + around.bottom - height) / 2);
    m_window = CreateWindowExW(WS_EX_DLGMODALFRAME, kBoxClass, m_caption.c_str(), style, x, y, width, height,
                               m_owner, nullptr, nullptr, nullptr);
    disableOthers();
    sessions().push_back(this);
    ShowWindow(m_window, SW_SHOW);
    UpdateWindow(m_window);
}

MessageBoxSession::~MessageBoxSession() {
    auto& open = sessions();
    open.erase(std::remove(open.begin(), open.end(), this), open.end());
    // Re-enable the others before the box is destroyed, so that the owner can be activated in its place.
    for (HWND disabled : m_disabled) {
        EnableWindow(disabled, TRUE);
    }
    if (findWindow(m_window) != nullptr) {
        DestroyWindow(m_window);
    }
}

void MessageBoxSession::disableOthers() {
    std::vector<HWND> others;
    if (m_owner != nullptr) {
        others.push_back(m_owner);
    } else if ((m_type & MB_TASKMODAL) != 0) {
        for (const auto& window : allWindows()) {
            if (window->isTopLevel() && window->handle != m_window) {
                others.push_back(window->handle);
            }
        }
    }
    for (HWND other : others) {
        if (IsWindowEnabled(other) != FALSE) {
            m_disabled.push_back(other);
            EnableWindow(other, FALSE);
        }
    }
}

void MessageBoxSession::layOut() {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1);
    cairo_t* cairo = cairo_create(surface);
    PangoLayout* layout = makeLayout(cairo, m_text);
    pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    int width = 0;
    int height = 0;
    pango_layout_get_pixel_size(layout, &width, &height);
    if (width > kTextWidth) {
        pango_layout_set_width(layout, kTextWidth * PANGO_SCALE);
        pango_layout_get_pixel_size(layout, &width, &height);
    }
    g_object_unref(layout);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);

    const bool icon = (m_type & MB_ICONMASK) != 0;
    const int textLeft = kMargin + (icon ? kIconSize + kIconGap : 0);
    const int count = static_cast<int>(m_buttons.size());
    const int buttonsWidth = count * kButtonWidth + (count - 1) * kButtonGap + 2 * kMargin;
    m_size.cx = std::max({kSmallestWidth, textLeft + width + kMargin, buttonsWidth});
    const int bodyHeight = std::max(icon ? kIconSize : 0, height) + 2 * kMargin;
    m_size.cy = bodyHeight + kButtonBar;
    const int textTop = (bodyHeight - height) / 2;
    m_textPlace = {textLeft, textTop, textLeft + width, textTop + height};
    int left = m_size.cx - kMargin - count * kButtonWidth - (count - 1) * kButtonGap;
    const int top = bodyHeight + (kButtonBar - kButtonHeight) / 2;
    for (Button& button : m_buttons) {
        button.place = {left, top, left + kButtonWidth, top + kButtonHeight};
        left += kButtonWidth + kButtonGap;
    }
}

void MessageBoxSession::paintIcon(cairo_t* cairo, const RECT& place) const {
    struct Icon {
        COLORREF color;
        const char16_t* mark;
    };
    Icon icon{};
    switch (m_type & MB_ICONMASK) {
        case MB_ICONERROR:
            icon = {RGB(0xC8, 0x32, 0x32), u"\u00D7"};
            break;
        case MB_ICONWARNING:
            icon = {RGB(0xE0, 0x9A, 0x10), u"!"};
            break;
        case MB_ICONQUESTION:
            icon = {RGB(0x2F, 0x74, 0xC0), u"?"};
            break;
        default:
            icon = {RGB(0x2F, 0x74, 0xC0), u"i"};
            break;
    }
    const double x = (place.left + place.right) / 2.0;
    const double y = (place.top + place.bottom) / 2.0;
    setColor(cairo, icon.color);
    cairo_arc(cairo, x, y, kIconSize / 2.0, 0, kFullTurn);
    cairo_fill(cairo);
    PangoFontDescription* font = pango_font_description_copy(interfaceFont());
    pango_font_description_set_absolute_size(font, kIconSize * 0.62 * PANGO_SCALE);
    pango_font_description_set_weight(font, PANGO_WEIGHT_BOLD);
    PangoLayout* layout = makeLayout(cairo, icon.mark, font);
    int width = 0;
    int height = 0;
    pango_layout_get_pixel_size(layout, &width, &height);
    setColor(cairo, RGB(255, 255, 255));
    cairo_move_to(cairo, x - width / 2.0, y - height / 2.0);
    pango_cairo_show_layout(cairo, layout);
    g_object_unref(layout);
    pango_font_description_free(font);
}

void MessageBoxSession::paint() {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(m_window, &paint);
    const RECT body = {0, 0, m_size.cx, m_size.cy - kButtonBar};
    const RECT bar = {0, body.bottom, m_size.cx, m_size.cy};
    FillRect(dc, &body, GetSysColorBrush(COLOR_WINDOW));
    FillRect(dc, &bar, GetSysColorBrush(COLOR_BTNFACE));
    const RECT whole = {0, 0, m_size.cx, m_size.cy};
    FrameRect(dc, &whole, GetSysColorBrush(COLOR_BTNSHADOW));
    cairo_t* cairo = findContext(dc)->cairo;
    if ((m_type & MB_ICONMASK) != 0) {
        const int top = (body.bottom - kIconSize) / 2;
        paintIcon(cairo, {kMargin, top, kMargin + kIconSize, top + kIconSize});
    }
    PangoLayout* layout = makeLayout(cairo, m_text);
    pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    pango_layout_set_width(layout, kTextWidth * PANGO_SCALE);
    setColor(cairo, GetSysColor(COLOR_WINDOWTEXT));
    cairo_move_to(cairo, m_textPlace.left, m_textPlace.top);
    pango_cairo_show_layout(cairo, layout);
    g_object_unref(layout);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    for (std::size_t i = 0; i < m_buttons.size(); ++i) {
        RECT place = m_buttons[i].place;
        const bool focused = static_cast<int>(i) == m_focused;
        const bool pressed = static_cast<int>(i) == m_pressed;
        FillRect(dc, &place, GetSysColorBrush(pressed ? COLOR_BTNSHADOW : COLOR_WINDOW));
        FrameRect(dc, &place, GetSysColorBrush(focused ? COLOR_HIGHLIGHT : COLOR_BTNSHADOW));
        if (focused) {
            InflateRect(&place, -1, -1);
            FrameRect(dc, &place, GetSysColorBrush(COLOR_HIGHLIGHT));
        }
        DrawTextW(dc, m_buttons[i].text.c_str(), -1, &place, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
    }
    EndPaint(m_window, &paint);
}

bool MessageBoxSession::hasButton(int id) const {
    return std::any_of(m_buttons.begin(), m_buttons.end(),
                       [id](const Button& button) { return button.id == id; });
}

void MessageBoxSession::choose(int id) {
    m_result = id;
}

void MessageBoxSession::cancel() {
    if (hasButton(IDCANCEL)) {
        choose(IDCANCEL);
    } else if (m_buttons.size() == 1) {
        choose(m_buttons.front().id);
    }
}

bool MessageBoxSession::key(int virtualKey) {
    const int count = static_cast<int>(m_buttons.size());
    switch (virtualKey) {
        case VK_RETURN:
        case VK_SPACE:
            choose(m_buttons[static_cast<std::size_t>(m_focused)].id);
            return true;
        case VK_ESCAPE:
            cancel();
            return true;
        case VK_TAB:
        case VK_RIGHT:
        case VK_DOWN:
        case VK_LEFT:
        case VK_UP: {
            const bool back = virtualKey == VK_LEFT || virtualKey == VK_UP ||
                              (virtualKey == VK_TAB && (GetKeyState(VK_SHIFT) & 0x8000) != 0);
            m_focused = (m_focused + (back ? count - 1 : 1)) % count;
            InvalidateRect(m_window, nullptr, FALSE);
            return true;
        }
        default:
            break;
    }
    for (const Button& button : m_buttons) {
        const std::size_t mark = button.text.find(u'&');
        if (mark != std::u16string::npos && button.text[mark + 1] == static_cast<TCHAR>(virtualKey)) {
            choose(button.id);
            return true;
        }
    }
    return false;
}

LRESULT MessageBoxSession::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    const auto buttonAt = [this, point] {
        for (std::size_t i = 0; i < m_buttons.size(); ++i) {
            if (PtInRect(&m_buttons[i].place, point) != FALSE) {
                return static_cast<int>(i);
            }
        }
        return -1;
    };
    switch (message) {
        case WM_PAINT:
            paint();
            return 0;
        case WM_ERASEBKGND:
            return TRUE;
        case WM_COMMAND:
            if (hasButton(LOWORD(wParam))) {
                choose(LOWORD(wParam));
            }
            return 0;
        case WM_CLOSE:
            cancel();
            return 0;
        case WM_KEYDOWN:
            key(static_cast<int>(wParam));
            return 0;
        case WM_SYSKEYDOWN:
            // Alt with a button's access key; the rest (Alt+F4) is left to DefWindowProc.
            return wParam != VK_MENU && key(static_cast<int>(wParam))
                       ? 0
                       : DefWindowProcW(m_window, message, wParam, lParam);
        case WM_LBUTTONDOWN:
            m_pressed = buttonAt();
            if (m_pressed >= 0) {
                m_focused = m_pressed;
                SetCapture(m_window);
                InvalidateRect(m_window, nullptr, FALSE);
            }
            return 0;
        case WM_LBUTTONUP:
            if (m_pressed >= 0) {
                const int pressed = std::exchange(m_pressed, -1);
                ReleaseCapture();
                InvalidateRect(m_window, nullptr, FALSE);
                if (buttonAt() == pressed) {
                    choose(m_buttons[static_cast<std::size_t>(pressed)].id);
                }
            }
            return 0;
        default:
            return DefWindowProcW(m_window, message, wParam, lParam);
    }
}

int MessageBoxSession::run() {
    while (m_result == 0 && findWindow(m_window) != nullptr) {
        MSG message;
        if (GetMessageW(&message, nullptr, 0, 0) == FALSE) {
            // Re-post WM_QUIT for the program's own message loop; the box returns as if it had been
            // cancelled.
            PostQuitMessage(static_cast<int>(message.wParam));
            return IDCANCEL;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return m_result;
}

OpenBox MessageBoxSession::describe() const {
    OpenBox box = {m_window, m_caption, m_text, m_type, {}};
    for (const Button& button : m_buttons) {
        RECT place = button.place;
        MapWindowPoints(m_window, nullptr, reinterpret_cast<LPPOINT>(&place), 2);
        std::u16string text = button.text;
        text.erase(std::remove(text.begin(), text.end(), u'&'), text.end());
        box.buttons.push_back({button.id, text, place});
    }
    return box;
}

}  // namespace

std::vector<OpenBox> openMessageBoxes() {
    std::vector<OpenBox> boxes;
    for (const MessageBoxSession* session : sessions()) {
        boxes.push_back(session->describe());
    }
    return boxes;
}

bool answerMessageBox(HWND window, int buttonId) {
    for (const MessageBoxSession* session : sessions()) {
        if (session->window() == window && session->hasButton(buttonId)) {
            return PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(buttonId), 0) != FALSE;
        }
    }
    return false;
}

}  // namespace win32

using namespace win32;

int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) {
    int result = 0;
    callOnMainThread([&] {
        if (owner != nullptr && requireWindow(owner) == nullptr) {
            return;
        }
        MessageBoxSession session(owner, text, caption, type);
        result = session.run();
    });
    return result;
}

BOOL MessageBeep(UINT) {
    if (Display::isOpen()) {
        xcb_bell(Display::instance().connection(), 0);
        Display::instance().flush();
    }
    return TRUE;
}
