#pragma once

#include <afxwin.h>

#include <optional>

#include "sim/cad/app/KeyInput.h"

namespace cad {

/// Shows the drawing. Clicks pick points while a command asks for them, the mouse wheel zooms, dragging with
/// the middle button pans, and the right button acts as Enter. Keyboard input goes to the command line.
class DrawingView : public CView {
public:
    explicit DrawingView(Editor& editor);

    /// Creates the window as the frame's client pane.
    bool createIn(CFrameWnd& frame);
    /// Convert between screen coordinates and drawing coordinates.
    Point toDrawing(CPoint screen) const;
    CPoint toScreen(Point drawing) const;

protected:
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg void OnSize(UINT type, int cx, int cy);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnRButtonDown(UINT flags, CPoint point);
    afx_msg void OnMButtonDown(UINT flags, CPoint point);
    afx_msg void OnMButtonUp(UINT flags, CPoint point);
    afx_msg void OnMouseMove(UINT flags, CPoint point);
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    afx_msg BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
    afx_msg void OnChar(UINT character, UINT repeats, UINT flags);
    afx_msg void OnKeyDown(UINT key, UINT repeats, UINT flags);
    DECLARE_MESSAGE_MAP()

private:
    Editor& m_editor;
    KeyInput m_keys;
    std::optional<CPoint> m_crosshair;
    std::optional<CPoint> m_panFrom;
};

}  // namespace cad
