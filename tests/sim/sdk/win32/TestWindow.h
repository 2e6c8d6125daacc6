#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

/// A window that records its messages.
class TestWindow {
public:
    using Handler = std::function<bool(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result)>;

    explicit TestWindow(DWORD style = WS_OVERLAPPEDWINDOW, RECT rectangle = {20, 20, 320, 220},
                        HWND parent = nullptr, UINT classStyle = 0);
    ~TestWindow();
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    HWND handle() const { return m_handle; }
    operator HWND() const { return m_handle; }

    /// All messages since the last clear.
    const std::vector<MSG>& messages() const { return m_messages; }
    void clear() { m_messages.clear(); }
    int count(UINT message) const;
    /// The last message with this number; fails the test if there was none.
    MSG last(UINT message) const;
    /// Called before DefWindowProc; true means the message is handled.
    void setHandler(Handler handler) { m_handler = std::move(handler); }

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_handle = nullptr;
    std::vector<MSG> m_messages;
    Handler m_handler;
};

/// Runs a message loop until the condition holds; false on timeout.
bool pumpUntil(const std::function<bool()>& condition, int milliseconds = 10000);
/// Dispatches messages until none has arrived for a short time.
void pumpAll();
/// Removes one message from the queue; WM_NULL if there is none.
MSG takeMessage();
