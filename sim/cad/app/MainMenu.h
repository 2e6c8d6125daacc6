#pragma once

#include <afxwin.h>

#include <string>
#include <vector>

#include "sim/cad/core/Editor.h"

namespace cad {

/// The menu bar. Its items run commands or set system variables.
class MainMenu {
public:
    static constexpr UINT kFirstId = 0x8001;
    static constexpr UINT kLastId = 0x80FF;

    explicit MainMenu(Editor& editor) : m_editor(editor) {}

    void attachTo(CFrameWnd& frame);
    /// Updates the check marks from the system variables.
    void update();
    void choose(UINT id);

private:
    Editor& m_editor;
    CMenu m_bar;
};

}  // namespace cad
