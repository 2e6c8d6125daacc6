#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace win32 {

/// A button of an open message box.
struct BoxButton {
    int id;               ///< IDOK, IDYES…
    std::u16string text;  ///< without the access mark
    RECT place;           ///< in screen coordinates
};

/// An open message box, as MessageBoxW was called.
struct OpenBox {
    HWND window;
    std::u16string caption;
    std::u16string text;
    UINT type;
    std::vector<BoxButton> buttons;
};

/// The open message boxes, the topmost last. Main thread.
std::vector<OpenBox> openMessageBoxes();

/// Posts the choice of a button to an open box; false when no such box is open or it has no such button. Main
/// thread.
bool answerMessageBox(HWND window, int buttonId);

}  // namespace win32
