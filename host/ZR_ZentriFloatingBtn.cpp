#include "host/ZR_ZentriFloatingBtn.h"

#include <rxmfcapi.h>

#include <QMouseEvent>

#include "ui_ZR_ZentriFloatingBtn.h"

ZR_ZentriFloatingBtn::ZR_ZentriFloatingBtn(QWidget* parent)
    : QWidget(parent),
      m_drawingViewRect(0, 0, 0, 0),
      m_ui(std::make_unique<Ui::ZR_ZentriFloatingBtnClass>()) {
    m_ui->setupUi(this);
    setWindowFlags(windowFlags() | Qt::SplashScreen | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_DeleteOnClose);
}

ZR_ZentriFloatingBtn::~ZR_ZentriFloatingBtn() = default;

void ZR_ZentriFloatingBtn::lookUpDrawingView() {
    const CView* const drawingView = acedGetAcadDwgView();
    if (drawingView != nullptr && m_drawingViewRect.IsRectEmpty()) {
        drawingView->GetWindowRect(&m_drawingViewRect);
    }
}

void ZR_ZentriFloatingBtn::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    m_dragOffset = event->globalPos() - pos();
    event->accept();
}

void ZR_ZentriFloatingBtn::mouseMoveEvent(QMouseEvent* event) {
    if (!event->buttons().testFlag(Qt::LeftButton)) {
        return;
    }
    QPoint target = event->globalPos() - m_dragOffset;
    if (const QWidget* const parent = parentWidget()) {
        target.setX(qMax(0, qMin(target.x(), parent->width() - width())));
        target.setY(qMax(0, qMin(target.y(), parent->height() - height())));
    }
    move(target);
    event->accept();
}
