#pragma once

#include <afxwin.h>

#include "sim/cad/core/Editor.h"

namespace cad {

/// Turns the key messages of the program's own windows into command line input. Characters, Enter, Escape and
/// Backspace come as WM_CHAR, so that input methods and programs that only send characters work as well.
class KeyInput {
public:
    explicit KeyInput(Editor& editor) : m_editor(editor) {}

    /// A UTF-16 unit of WM_CHAR; the second half of a pair completes the first.
    void character(UINT unit);
    /// WM_KEYDOWN of a key without a character; false when the key means nothing here.
    bool key(UINT virtualKey);

private:
    void toggle(const char* variable);

    Editor& m_editor;
    char32_t m_highSurrogate = 0;
};

}  // namespace cad
