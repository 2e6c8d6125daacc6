#pragma once

#include <afxwin.h>

#include <QPoint>
#include <QWidget>
#include <memory>

namespace Ui {
class ZR_ZentriFloatingBtnClass;
}

/// A small tile with one button that stays on top and can be dragged within its parent widget. Part of the
/// interface; nothing in the module creates it, and its button is not connected.
class ZR_ZentriFloatingBtn : public QWidget {
    Q_OBJECT

public:
    explicit ZR_ZentriFloatingBtn(QWidget* parent = nullptr);
    ~ZR_ZentriFloatingBtn() override;
    ZR_ZentriFloatingBtn(const ZR_ZentriFloatingBtn&) = delete;
    ZR_ZentriFloatingBtn& operator=(const ZR_ZentriFloatingBtn&) = delete;

    /// Looks up the host's drawing view and stores its screen rectangle, unless one is stored already.
    void lookUpDrawingView();
    /// The stored rectangle; empty until the drawing view has been found.
    CRect drawingViewRect() const { return m_drawingViewRect; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    /// The cursor's position relative to the widget's when the button was pressed.
    QPoint m_dragOffset;
    CRect m_drawingViewRect;
    std::unique_ptr<Ui::ZR_ZentriFloatingBtnClass> m_ui;
};
