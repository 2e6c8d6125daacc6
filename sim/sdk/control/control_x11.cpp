// Simulated input through the XTEST extension, and screenshots.

#include "win32_control.h"

#include "win32_display.h"
#include "win32_keyboard.h"
#include "win32_message_box.h"
#include "win32_support.h"
#include "win32_window.h"

#include <cairo.h>
#include <xcb/xtest.h>

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

}  // namespace

std::vector<Win32MessageBox> win32MessageBoxes() {
    std::vector<Win32MessageBox> boxes;
    for (OpenBox& open : openMessageBoxes()) {
        Win32MessageBox box = {open.window, std::move(open.caption), std::move(open.text), open.type, {}};
        for (BoxButton& button : open.buttons) {
            box.buttons.push_back({button.id, std::move(button.text), button.place});
        }
        boxes.push_back(std::move(box));
    }
    return boxes;
}

bool win32AnswerMessageBox(HWND window, int buttonId) {
    return answerMessageBox(window, buttonId);
}

bool win32PointerMove(int x, int y) {
    return fake(XCB_MOTION_NOTIFY, 0, x, y);
}

bool win32PointerButton(int button, bool down) {
    return fake(down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
}

bool win32KeyEvent(int virtualKey, bool down) {
    const xcb_keycode_t code = codeOf(virtualKey);
    return code != 0 && fake(down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code);
}

Win32Picture win32Grab(HWND handle) {
    const Display& display = Display::instance();
    // Grab the root: it has what is really on the screen, also where something covers the window.
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
