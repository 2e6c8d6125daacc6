// Real input through the X server's test extension, and pictures of the screen.

#include "win32_control.h"

#include "win32_display.h"
#include "win32_keyboard.h"
#include "win32_support.h"
#include "win32_window.h"

#include <cairo.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

using namespace win32;

namespace {

bool hasTestExtension() {
    static const bool present = [] {
        const xcb_query_extension_reply_t* extension =
            xcb_get_extension_data(Display::instance().connection(), &xcb_test_id);
        return extension != nullptr && extension->present != 0;
    }();
    return present;
}

bool fake(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0) {
    if (!hasTestExtension()) {
        return false;
    }
    const Display& display = Display::instance();
    xcb_test_fake_input(display.connection(), type, detail, XCB_CURRENT_TIME, display.root(),
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    display.sync();
    return true;
}

/// A run of matching pixels in a row, and the group it has been found to belong to.
struct Run {
    int row;
    int left;
    int right;
    std::size_t group;
};

std::size_t rootOf(std::vector<std::size_t>& groups, std::size_t group) {
    while (groups[group] != group) {
        group = groups[group] = groups[groups[group]];
    }
    return group;
}

bool matches(DWORD pixel, DWORD color, int tolerance) {
    for (const int shift : {0, 8, 16}) {
        const int difference =
            static_cast<int>(pixel >> shift & 0xFFU) - static_cast<int>(color >> shift & 0xFFU);
        if (std::abs(difference) > tolerance) {
            return false;
        }
    }
    return true;
}

std::vector<Run> matchingRuns(const Win32Picture& picture, DWORD color, int tolerance) {
    std::vector<Run> runs;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (!matches(picture.at(x, y), color, tolerance)) {
                continue;
            }
            const int left = x;
            while (x + 1 < picture.width && matches(picture.at(x + 1, y), color, tolerance)) {
                ++x;
            }
            runs.push_back({y, left, x, runs.size()});
        }
    }
    return runs;
}

}  // namespace

bool win32PointerMove(int x, int y) {
    return fake(XCB_MOTION_NOTIFY, 0, x, y);
}

bool win32PointerButton(int button, bool down) {
    return fake(down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
}

bool win32PointerClick(int x, int y, int button) {
    return win32PointerMove(x, y) && win32PointerButton(button, true) && win32PointerButton(button, false);
}

bool win32KeyEvent(int virtualKey, bool down) {
    const xcb_keycode_t code = codeOf(virtualKey);
    return code != 0 && fake(down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code);
}

bool win32KeyStroke(int virtualKey, bool shift, bool control, bool alt) {
    const std::pair<bool, int> modifiers[] = {{shift, VK_SHIFT}, {control, VK_CONTROL}, {alt, VK_MENU}};
    bool done = true;
    for (const auto& [wanted, key] : modifiers) {
        done = done && (!wanted || win32KeyEvent(key, true));
    }
    done = done && win32KeyEvent(virtualKey, true) && win32KeyEvent(virtualKey, false);
    for (const auto& [wanted, key] : modifiers) {
        if (wanted) {
            win32KeyEvent(key, false);
        }
    }
    return done;
}

Win32Picture win32Grab(HWND handle) {
    const Display& display = Display::instance();
    // The root's picture is what is really shown; a window's own lacks what covers it.
    RECT place = {0, 0, display.screen()->width_in_pixels, display.screen()->height_in_pixels};
    if (handle != nullptr) {
        RECT window;
        if (IsWindowVisible(handle) == FALSE || GetWindowRect(handle, &window) == FALSE ||
            IntersectRect(&place, &place, &window) == FALSE) {
            return {};
        }
    }
    const int width = place.right - place.left;
    const int height = place.bottom - place.top;
    const auto image = owned(xcb_get_image_reply(
        display.connection(),
        xcb_get_image(display.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, display.root(),
                      static_cast<std::int16_t>(place.left), static_cast<std::int16_t>(place.top),
                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0xFFFFFFFFU),
        nullptr));
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (!image || static_cast<std::size_t>(xcb_get_image_data_length(image.get())) < pixels * sizeof(DWORD)) {
        return {};
    }
    Win32Picture picture;
    picture.width = width;
    picture.height = height;
    picture.pixels.resize(pixels);
    std::memcpy(picture.pixels.data(), xcb_get_image_data(image.get()), pixels * sizeof(DWORD));
    for (DWORD& pixel : picture.pixels) {
        pixel &= 0xFFFFFFU;
    }
    return picture;
}

bool win32SavePng(const Win32Picture& picture, const std::string& path) {
    if (picture.pixels.empty()) {
        return false;
    }
    std::vector<DWORD> pixels = picture.pixels;
    cairo_surface_t* surface = cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(pixels.data()), CAIRO_FORMAT_RGB24, picture.width, picture.height,
        picture.width * 4);
    const bool written = cairo_surface_write_to_png(surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    return written;
}

std::vector<RECT> win32FindClusters(const Win32Picture& picture, DWORD color, int tolerance,
                                    int minimumPixels, int joinDistance) {
    const std::vector<Run> runs = matchingRuns(picture, color, tolerance);
    std::vector<std::size_t> groups(runs.size());
    for (std::size_t i = 0; i < groups.size(); ++i) {
        groups[i] = i;
    }
    for (std::size_t i = 0; i < runs.size(); ++i) {
        for (std::size_t j = i; j-- > 0 && runs[i].row - runs[j].row <= joinDistance;) {
            if (runs[j].left <= runs[i].right + joinDistance &&
                runs[i].left <= runs[j].right + joinDistance) {
                groups[rootOf(groups, i)] = rootOf(groups, j);
            }
        }
    }
    std::vector<RECT> extents(runs.size());
    std::vector<int> counts(runs.size(), 0);
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const std::size_t group = rootOf(groups, i);
        const RECT part = {runs[i].left, runs[i].row, runs[i].right + 1, runs[i].row + 1};
        UnionRect(&extents[group], &extents[group], &part);
        counts[group] += runs[i].right - runs[i].left + 1;
    }
    std::vector<RECT> clusters;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        if (counts[i] >= minimumPixels && groups[i] == i) {
            clusters.push_back(extents[i]);
        }
    }
    std::sort(clusters.begin(), clusters.end(), [](const RECT& left, const RECT& right) {
        return left.top != right.top ? left.top < right.top : left.left < right.left;
    });
    return clusters;
}
