#pragma once

// The slice's own connection to the X server. Main thread, but for the connection itself, which xcb locks.

#include "windef.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace win32 {

/// xcb hands out replies and events allocated with malloc.
template <typename Reply>
using XcbOwned = std::unique_ptr<Reply, decltype(&std::free)>;
template <typename Reply>
XcbOwned<Reply> owned(Reply* reply) {
    return XcbOwned<Reply>(reply, &std::free);
}

struct Atoms {
    xcb_atom_t wmProtocols, wmDeleteWindow, wmTakeFocus, netSupportingWmCheck, netWmName, utf8String,
        netWmState, netWmStateMaximizedHorz, netWmStateMaximizedVert, netWmPid, xembed, xembedInfo,
        netWmWindowType, netWmWindowTypeDialog;
};

class Display {
public:
    /// The connection, opened on first use; ends the program with a message when there is no X server.
    static Display& instance();
    /// Whether it has been opened; asks for nothing.
    static bool isOpen();

    xcb_connection_t* connection() const { return m_connection; }
    const xcb_screen_t* screen() const { return m_screen; }
    xcb_window_t root() const { return m_screen->root; }
    /// The visual of the root window, which all windows of the slice have.
    xcb_visualtype_t* visual() const { return m_visual; }
    const Atoms& atoms() const { return m_atoms; }

    /// Whether a window manager runs: looked up at every call, since one may come and go.
    bool hasWindowManager() const;

    /// Writes out requests and waits until the server has carried them out, so that another connection (Qt's)
    /// that is told a window's id finds the window.
    void sync() const;
    void flush() const { xcb_flush(m_connection); }

    /// Time of the last event seen; for requests that want one.
    xcb_timestamp_t time() const { return m_time; }
    void setTime(xcb_timestamp_t time) { m_time = time; }

private:
    Display();

    xcb_connection_t* m_connection = nullptr;
    const xcb_screen_t* m_screen = nullptr;
    xcb_visualtype_t* m_visual = nullptr;
    Atoms m_atoms{};
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
};

inline xcb_window_t toXid(HWND window) {
    return static_cast<xcb_window_t>(reinterpret_cast<std::uintptr_t>(window));
}
inline HWND toHwnd(xcb_window_t window) {
    return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(window));
}

}  // namespace win32
