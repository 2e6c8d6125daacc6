#pragma once

#include <afxext.h>

#include "sim/cad/app/CommandLinePainter.h"
#include "sim/cad/app/KeyInput.h"

namespace cad {

/// The command line window at the lower edge of the frame. The mouse wheel scrolls the history.
class CommandWindow : public CControlBar {
public:
    static constexpr UINT kId = 0xE8C0;

    explicit CommandWindow(Editor& editor);

    bool createIn(CFrameWnd& frame);
    /// Scrolls to the newest rows, after text was printed or typed.
    void followText();

    CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override;

protected:
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg void OnTimer(UINT_PTR id);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    afx_msg void OnChar(UINT character, UINT repeats, UINT flags);
    afx_msg void OnKeyDown(UINT key, UINT repeats, UINT flags);
    DECLARE_MESSAGE_MAP()

private:
    /// Whether keyboard input reaches the command line and not a palette or a dialog.
    bool takesKeys() const;

    Editor& m_editor;
    KeyInput m_keys;
    CommandLinePainter m_painter;
    int m_scrolledRows = 0;
    bool m_caretVisible = true;
};

}  // namespace cad
