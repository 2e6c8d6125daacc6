#include "win32_display.h"

#include <cstdio>
#include <cstring>
#include <iterator>

namespace win32 {

namespace {

bool g_open = false;

xcb_visualtype_t* visualOf(const xcb_screen_t* screen) {
    for (auto depth = xcb_screen_allowed_depths_iterator(screen); depth.rem != 0; xcb_depth_next(&depth)) {
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem != 0;
             xcb_visualtype_next(&visual)) {
            if (visual.data->visual_id == screen->root_visual) {
                return visual.data;
            }
        }
    }
    return nullptr;
}

}  // namespace

Display& Display::instance() {
    static Display display;
    return display;
}

bool Display::isOpen() {
    return g_open;
}

Display::Display() {
    int screenNumber = 0;
    m_connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(m_connection) != 0) {
        const char* name = std::getenv("DISPLAY");
        std::fprintf(stderr, "win32: windows need an X server, and none can be reached at DISPLAY=\"%s\"\n",
                     name != nullptr ? name : "");
        std::abort();
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
    for (; screenNumber > 0 && screens.rem > 1; --screenNumber) {
        xcb_screen_next(&screens);
    }
    m_screen = screens.data;
    m_visual = visualOf(m_screen);
    if (m_visual == nullptr || m_screen->root_depth < 24) {
        std::fputs("win32: the X server's screen must have a depth of 24 bits\n", stderr);
        std::abort();
    }

    const struct {
        const char* name;
        xcb_atom_t Atoms::*atom;
    } wanted[] = {
        {"WM_PROTOCOLS", &Atoms::wmProtocols},
        {"WM_DELETE_WINDOW", &Atoms::wmDeleteWindow},
        {"WM_TAKE_FOCUS", &Atoms::wmTakeFocus},
        {"_NET_SUPPORTING_WM_CHECK", &Atoms::netSupportingWmCheck},
        {"_NET_WM_NAME", &Atoms::netWmName},
        {"UTF8_STRING", &Atoms::utf8String},
        {"_NET_WM_STATE", &Atoms::netWmState},
        {"_NET_WM_STATE_MAXIMIZED_HORZ", &Atoms::netWmStateMaximizedHorz},
        {"_NET_WM_STATE_MAXIMIZED_VERT", &Atoms::netWmStateMaximizedVert},
        {"_NET_WM_PID", &Atoms::netWmPid},
        {"_XEMBED", &Atoms::xembed},
        {"_XEMBED_INFO", &Atoms::xembedInfo},
        {"_NET_WM_WINDOW_TYPE", &Atoms::netWmWindowType},
        {"_NET_WM_WINDOW_TYPE_DIALOG", &Atoms::netWmWindowTypeDialog},
    };
    xcb_intern_atom_cookie_t cookies[std::size(wanted)];
    for (std::size_t i = 0; i < std::size(wanted); ++i) {
        cookies[i] = xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(std::strlen(wanted[i].name)),
                                     wanted[i].name);
    }
    for (std::size_t i = 0; i < std::size(wanted); ++i) {
        const auto reply = owned(xcb_intern_atom_reply(m_connection, cookies[i], nullptr));
        m_atoms.*wanted[i].atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    // Reports the unmapping of the window with the input focus: the server sends no FocusIn when the focus
    // reverts to the root.
    const std::uint32_t rootEvents = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection, root(), XCB_CW_EVENT_MASK, &rootEvents);
    g_open = true;
}

bool Display::hasWindowManager() const {
    const auto reply = owned(xcb_get_property_reply(
        m_connection,
        xcb_get_property(m_connection, 0, root(), m_atoms.netSupportingWmCheck, XCB_ATOM_WINDOW, 0, 1),
        nullptr));
    if (!reply || reply->type != XCB_ATOM_WINDOW || xcb_get_property_value_length(reply.get()) < 4) {
        return false;
    }
    // A window manager that died leaves the property behind, naming a window that no longer exists.
    const auto check = *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
    const auto attributes = owned(xcb_get_window_attributes_reply(
        m_connection, xcb_get_window_attributes(m_connection, check), nullptr));
    return attributes != nullptr;
}

void Display::sync() const {
    owned(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

}  // namespace win32
