#include "tests/sim/sdk/win32/TestWindow.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

LPCWSTR registerClass(UINT style, WNDPROC procedure) {
    static std::vector<std::u16string> names;
    const std::u16string name = u"ZrTestWindow" + std::u16string(1, static_cast<TCHAR>(u'A' + style));
    WNDCLASSEXW known{};
    for (const std::u16string& registered : names) {
        if (registered == name) {
            return registered.c_str();
        }
    }
    names.reserve(64);
    names.push_back(name);
    known.cbSize = sizeof known;
    known.style = style;
    known.lpfnWndProc = procedure;
    known.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    known.lpszClassName = names.back().c_str();
    RegisterClassExW(&known);
    return names.back().c_str();
}

}  // namespace

TestWindow::TestWindow(DWORD style, RECT rectangle, HWND parent, UINT classStyle) {
    m_handle =
        CreateWindowExW(0, registerClass(classStyle, procedure), u"test", style, rectangle.left,
                        rectangle.top, rectangle.right - rectangle.left, rectangle.bottom - rectangle.top,
                        parent, nullptr, GetModuleHandleW(nullptr), this);
}

TestWindow::~TestWindow() {
    if (m_handle != nullptr && IsWindow(m_handle) != FALSE) {
        DestroyWindow(m_handle);
    }
}

LRESULT CALLBACK TestWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
    }
    auto* self = reinterpret_cast<TestWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    MSG record{};
    record.hwnd = window;
    record.message = message;
    record.wParam = wParam;
    record.lParam = lParam;
    self->m_messages.push_back(record);
    LRESULT result = 0;
    if (self->m_handler && self->m_handler(message, wParam, lParam, result)) {
        return result;
    }
    if (message == WM_NCDESTROY) {
        self->m_handle = nullptr;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

int TestWindow::count(UINT message) const {
    return static_cast<int>(std::count_if(m_messages.begin(), m_messages.end(), [message](const MSG& record) {
        return record.message == message;
    }));
}

MSG TestWindow::last(UINT message) const {
    const auto found = std::find_if(m_messages.rbegin(), m_messages.rend(),
                                    [message](const MSG& record) { return record.message == message; });
    if (found == m_messages.rend()) {
        ADD_FAILURE() << "no message " << message;
        return {};
    }
    return *found;
}

bool pumpUntil(const std::function<bool()>& condition, int milliseconds) {
    constexpr UINT kTick = 10;
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(milliseconds);
    const UINT_PTR timer = SetTimer(nullptr, 0, kTick, nullptr);
    bool holds = condition();
    while (!holds && GetTickCount64() < end) {
        MSG message;
        if (GetMessageW(&message, nullptr, 0, 0) == FALSE) {
            break;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
        holds = condition();
    }
    KillTimer(nullptr, timer);
    return holds;
}

void pumpAll() {
    constexpr ULONGLONG kQuietMilliseconds = 60;
    ULONGLONG quietSince = GetTickCount64();
    pumpUntil([&quietSince] {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
            if (message.message != WM_TIMER || message.hwnd != nullptr) {
                quietSince = GetTickCount64();
            }
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        return GetTickCount64() - quietSince >= kQuietMilliseconds;
    });
}

MSG takeMessage() {
    MSG message{};
    if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) == FALSE) {
        return {};
    }
    return message;
}
