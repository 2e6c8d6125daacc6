#include "sim/cad/app/Theme.h"

namespace cad {

const Theme& themeFor(int colorTheme) {
    static const Theme dark{
        0x2B2F36,  // frame
        0x23272D,  // caption
        0x2F343C,  // popup
        0x3A6796,  // menuHighlight
        0xDDE1E7,  // text
        0xA3ABB8,  // mutedText
        0x3B414B,  // border
        0x1F2329,  // view
        0x262B32,  // gridMinor
        0x2F353E,  // gridMajor
        0xA8494E,  // axisX
        0x4C9159,  // axisY
        0xC5CBD4,  // crosshair
        0xE8EBF0,  // entity
        0x5AA9FF,  // preview
        0x4C9DFF,  // accent
        0x23272D,  // history
        0x1B1E23,  // input
        0xF2F4F7,  // inputText
    };
    static const Theme light{
        0xF1F3F5,  // frame
        0xE4E8EC,  // caption
        0xFFFFFF,  // popup
        0xB5D3F7,  // menuHighlight
        0x252B34,  // text
        0x586170,  // mutedText
        0xD5DAE0,  // border
        0xFCFCFD,  // view
        0xF0F2F4,  // gridMinor
        0xE3E7EB,  // gridMajor
        0xD98A8D,  // axisX
        0x7FBF8B,  // axisY
        0x59626F,  // crosshair
        0x1E242C,  // entity
        0x1B6FE0,  // preview
        0x1B6FE0,  // accent
        0xF8F9FA,  // history
        0xFFFFFF,  // input
        0x12161C,  // inputText
    };
    return colorTheme == 1 ? light : dark;
}

}  // namespace cad
