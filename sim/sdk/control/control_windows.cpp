// Implementation for Windows, over the real Win32.

#include "win32_control.h"

#include <objidl.h>

#include <gdiplus.h>

#include <algorithm>
#include <cwchar>
#include <memory>
#include <utility>

namespace {

constexpr int kTextCapacity = 4096;
constexpr const wchar_t* kDialogClass = L"#32770";

std::wstring textOf(HWND window) {
    wchar_t buffer[kTextCapacity];
    const LRESULT length = SendMessageW(window, WM_GETTEXT, kTextCapacity, reinterpret_cast<LPARAM>(buffer));
    return std::wstring(buffer, static_cast<std::size_t>(length));
}

bool isClass(HWND window, const wchar_t* name) {
    wchar_t buffer[64];
    return GetClassNameW(window, buffer, 64) > 0 && _wcsicmp(buffer, name) == 0;
}

std::wstring withoutAccessMark(std::wstring text) {
    text.erase(std::remove(text.begin(), text.end(), L'&'), text.end());
    return text;
}

/// The MB_ICON… part of a message box's type.
UINT typeOfIcon(HICON icon) {
    const std::pair<const wchar_t*, UINT> icons[] = {{IDI_EXCLAMATION, MB_ICONEXCLAMATION},
                                                     {IDI_QUESTION, MB_ICONQUESTION},
                                                     {IDI_HAND, MB_ICONHAND},
                                                     {IDI_ASTERISK, MB_ICONASTERISK}};
    for (const auto& [name, type] : icons) {
        if (icon == LoadIconW(nullptr, name)) {
            return type;
        }
    }
    return 0;
}

/// The buttons part of a message box's type.
UINT typeOfButtons(const std::vector<Win32MessageBoxButton>& buttons) {
    const auto has = [&buttons](int id) {
        return std::any_of(buttons.begin(), buttons.end(),
                           [id](const Win32MessageBoxButton& button) { return button.id == id; });
    };
    if (has(IDYES)) {
        return has(IDCANCEL) ? MB_YESNOCANCEL : MB_YESNO;
    }
    if (has(IDABORT)) {
        return MB_ABORTRETRYIGNORE;
    }
    if (has(IDRETRY)) {
        return MB_RETRYCANCEL;
    }
    return has(IDOK) && has(IDCANCEL) ? MB_OKCANCEL : MB_OK;
}

BOOL CALLBACK addControl(HWND control, LPARAM data) {
    auto& box = *reinterpret_cast<Win32MessageBox*>(data);
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(control, GWL_STYLE));
    if ((style & WS_VISIBLE) == 0) {
        return TRUE;
    }
    if (isClass(control, L"Button")) {
        Win32MessageBoxButton button{GetDlgCtrlID(control), withoutAccessMark(textOf(control)), {}};
        GetWindowRect(control, &button.screenRectangle);
        box.buttons.push_back(button);
    } else if (isClass(control, L"Static") && (style & SS_TYPEMASK) == SS_ICON) {
        box.type |= typeOfIcon(reinterpret_cast<HICON>(SendMessageW(control, STM_GETICON, 0, 0)));
    } else if (isClass(control, L"Static")) {
        box.text = textOf(control);
    }
    return TRUE;
}

BOOL CALLBACK addBox(HWND window, LPARAM data) {
    // Message boxes of all threads of this process.
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId() || !isClass(window, kDialogClass) ||
        IsWindowVisible(window) == FALSE) {
        return TRUE;
    }
    Win32MessageBox box{window, textOf(window), {}, 0, {}};
    EnumChildWindows(window, addControl, reinterpret_cast<LPARAM>(&box));
    // Another thread's box may be half created or destroyed.
    if (box.buttons.empty()) {
        return TRUE;
    }
    box.type |= typeOfButtons(box.buttons);
    reinterpret_cast<std::vector<Win32MessageBox>*>(data)->push_back(box);
    return TRUE;
}

bool sendInput(const INPUT& input) {
    INPUT copy = input;
    return SendInput(1, &copy, sizeof copy) == 1;
}

/// Starts GDI+ for a scope.
class GdiPlus {
public:
    GdiPlus() {
        const Gdiplus::GdiplusStartupInput input;
        m_started = Gdiplus::GdiplusStartup(&m_token, &input, nullptr) == Gdiplus::Ok;
    }
    GdiPlus(const GdiPlus&) = delete;
    GdiPlus& operator=(const GdiPlus&) = delete;
    ~GdiPlus() {
        if (m_started) {
            Gdiplus::GdiplusShutdown(m_token);
        }
    }
    bool started() const { return m_started; }

private:
    ULONG_PTR m_token = 0;
    bool m_started = false;
};

bool findEncoder(const wchar_t* mimeType, CLSID& encoder) {
    UINT count = 0;
    UINT bytes = 0;
    if (Gdiplus::GetImageEncodersSize(&count, &bytes) != Gdiplus::Ok || bytes == 0) {
        return false;
    }
    const std::unique_ptr<char[]> memory(new char[bytes]);
    auto* const encoders = reinterpret_cast<Gdiplus::ImageCodecInfo*>(memory.get());
    if (Gdiplus::GetImageEncoders(count, bytes, encoders) != Gdiplus::Ok) {
        return false;
    }
    for (UINT i = 0; i < count; ++i) {
        if (std::wcscmp(encoders[i].MimeType, mimeType) == 0) {
            encoder = encoders[i].Clsid;
            return true;
        }
    }
    return false;
}

}  // namespace

std::vector<Win32MessageBox> win32MessageBoxes() {
    std::vector<Win32MessageBox> boxes;
    EnumWindows(addBox, reinterpret_cast<LPARAM>(&boxes));
    // EnumWindows returns the topmost window first.
    std::reverse(boxes.begin(), boxes.end());
    return boxes;
}

bool win32AnswerMessageBox(HWND window, int buttonId) {
    const HWND button = GetDlgItem(window, buttonId);
    if (button == nullptr || IsWindowVisible(button) == FALSE) {
        return false;
    }
    return PostMessageW(window, WM_COMMAND, MAKEWPARAM(buttonId, BN_CLICKED),
                        reinterpret_cast<LPARAM>(button)) != FALSE;
}

bool win32PointerMove(int x, int y) {
    return SetCursorPos(x, y) != FALSE;
}

bool win32PointerButton(int button, bool down) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    switch (button) {
        case 1:
            input.mi.dwFlags = down ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_LEFTUP;
            break;
        case 2:
            input.mi.dwFlags = down ? MOUSEEVENTF_MIDDLEDOWN : MOUSEEVENTF_MIDDLEUP;
            break;
        case 3:
            input.mi.dwFlags = down ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_RIGHTUP;
            break;
        case 4:
        case 5:
            // A wheel notch is a single event on Windows, not a press and a release.
            if (!down) {
                return true;
            }
            input.mi.dwFlags = MOUSEEVENTF_WHEEL;
            input.mi.mouseData = static_cast<DWORD>(button == 4 ? WHEEL_DELTA : -WHEEL_DELTA);
            break;
        default:
            return false;
    }
    return sendInput(input);
}

bool win32KeyEvent(int virtualKey, bool down) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = static_cast<WORD>(virtualKey);
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(static_cast<UINT>(virtualKey), MAPVK_VK_TO_VSC));
    input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    return sendInput(input);
}

Win32Picture win32Grab(HWND window) {
    RECT place = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    if (window != nullptr) {
        RECT rect;
        if (IsWindowVisible(window) == FALSE || GetWindowRect(window, &rect) == FALSE ||
            IntersectRect(&place, &place, &rect) == FALSE) {
            return {};
        }
    }
    // Painted pixels may reach the screen only when the thread checks for messages and finds none. Peek for a
    // message that nobody sends.
    MSG none;
    PeekMessageW(&none, reinterpret_cast<HWND>(-1), WM_APP, WM_APP, PM_NOREMOVE);
    const int width = place.right - place.left;
    const int height = place.bottom - place.top;
    Win32Picture picture;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    // Negative: top-down rows.
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    if (const HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0)) {
        const HGDIOBJ former = SelectObject(memory, bitmap);
        if (BitBlt(memory, 0, 0, width, height, screen, place.left, place.top, SRCCOPY) != FALSE) {
            GdiFlush();
            picture.width = width;
            picture.height = height;
            const auto* const first = static_cast<const DWORD*>(bits);
            picture.pixels.assign(first,
                                  first + static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
            for (DWORD& pixel : picture.pixels) {
                pixel &= 0xFFFFFFU;
            }
        }
        SelectObject(memory, former);
        DeleteObject(bitmap);
    }
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return picture;
}

bool win32SavePng(const Win32Picture& picture, const std::string& path) {
    const int length = MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, nullptr, 0);
    CLSID encoder;
    const GdiPlus library;
    if (picture.pixels.empty() || length == 0 || !library.started() || !findEncoder(L"image/png", encoder)) {
        return false;
    }
    std::wstring name(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, name.data(), length);
    std::vector<DWORD> pixels = picture.pixels;
    Gdiplus::Bitmap bitmap(picture.width, picture.height, picture.width * 4, PixelFormat32bppRGB,
                           reinterpret_cast<BYTE*>(pixels.data()));
    return bitmap.Save(name.c_str(), &encoder, nullptr) == Gdiplus::Ok;
}
