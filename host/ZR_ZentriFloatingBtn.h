#pragma once

#include <afxwin.h>

#include <QPoint>
#include <QWidget>
#include <memory>

namespace Ui {
class ZR_ZentriFloatingBtnClass;
}

/// A small tile with one button that stays on top and can be dragged within its parent widget. Nothing shows
/// it yet, and its button does nothing yet.
class ZR_ZentriFloatingBtn : public QWidget {
    Q_OBJECT

public:
    explicit ZR_ZentriFloatingBtn(QWidget* parent = nullptr);
    ~ZR_ZentriFloatingBtn() override;
    ZR_ZentriFloatingBtn(const ZR_ZentriFloatingBtn&) = delete;
    ZR_ZentriFloatingBtn& operator=(const ZR_ZentriFloatingBtn&) = delete;

    /// Looks up the host's drawing view and keeps its place on the screen, unless one is kept already.
    void lookUpDrawingView();
    /// The kept place; empty until the drawing view has been found.
    CRect drawingViewRect() const { return m_drawingViewRect; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    /// From the widget's position to the cursor's, at the press.
    QPoint m_dragOffset;
    CRect m_drawingViewRect;
    std::unique_ptr<Ui::ZR_ZentriFloatingBtnClass> m_ui;
};
