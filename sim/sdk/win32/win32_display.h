#pragma once

// The slice's connection to the X server. Main thread, except the connection itself: xcb is thread-safe.

#include "windef.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace win32 {

/// Takes ownership of an xcb reply or event, which has to be released with free().
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
    /// The connection, opened on first use; aborts with a message when there is no X server.
    static Display& instance();
    /// Whether it has been opened; does not open it.
    static bool isOpen();

    xcb_connection_t* connection() const { return m_connection; }
    const xcb_screen_t* screen() const { return m_screen; }
    xcb_window_t root() const { return m_screen->root; }
    /// The visual of the root window, used for all of the slice's windows.
    xcb_visualtype_t* visual() const { return m_visual; }
    const Atoms& atoms() const { return m_atoms; }

    /// Whether a window manager is running. Queried at every call, since it may be started or ended any time.
    bool hasWindowManager() const;

    /// Flushes the requests and waits until the server has processed them, so that another connection (Qt's)
    /// can use a window's id at once.
    void sync() const;
    void flush() const { xcb_flush(m_connection); }

    /// Timestamp of the last input event, for requests that take one.
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
