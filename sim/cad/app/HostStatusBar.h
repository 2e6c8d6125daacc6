#pragma once

#include <afxext.h>

#include <string>
#include <vector>

#include "sim/cad/app/Canvas.h"
#include "sim/cad/core/Editor.h"

namespace cad {

/// The strip at the lower edge: the crosshair's coordinates and switches for grid, ortho and theme.
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
    /// As painted last.
    std::vector<Switch> m_switches;
};

}  // namespace cad
