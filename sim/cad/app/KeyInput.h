#pragma once

#include <afxwin.h>

#include "sim/cad/core/Editor.h"

namespace cad {

/// Turns the key messages of the program's own windows into command line input. Characters, Enter, Escape and
/// Backspace are taken from WM_CHAR rather than WM_KEYDOWN, so that input methods and programs that post only
/// WM_CHAR work too.
class KeyInput {
public:
    explicit KeyInput(Editor& editor) : m_editor(editor) {}

    /// Handles a UTF-16 code unit from WM_CHAR; a low surrogate completes the preceding high surrogate.
    void character(UINT unit);
    /// Handles WM_KEYDOWN for a key without a character; false if the key has no meaning here.
    bool key(UINT virtualKey);

private:
    void toggle(const char* variable);

    Editor& m_editor;
    char32_t m_highSurrogate = 0;
};

}  // namespace cad
