#pragma once

#include <afxext.h>

#include <string>
#include <vector>

#include "sim/cad/app/Canvas.h"
#include "sim/cad/core/Editor.h"

namespace cad {

/// The status bar: the crosshair's coordinates, and toggles for grid, ortho mode and theme.
class HostStatusBar : public CControlBar {
public:
    explicit HostStatusBar(Editor& editor) : m_editor(editor) {}

    bool createIn(CFrameWnd& frame);

    CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override;

protected:
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    DECLARE_MESSAGE_MAP()

private:
    struct Switch {
        const char* variable;
        std::string text;
        bool on;
        Area area;
    };

    std::vector<Switch> switches() const;

    Editor& m_editor;
    /// As last painted, for hit testing.
    std::vector<Switch> m_switches;
};

}  // namespace cad
