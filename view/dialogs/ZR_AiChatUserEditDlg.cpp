#include "view/dialogs/ZR_AiChatUserEditDlg.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>

#include "ui_ZR_AiChatUserEditDlg.h"
#include "view/theme/ChatDialogFlags.h"

ZR_AiChatUserEditDlg::ZR_AiChatUserEditDlg(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::ZR_AiChatUserEditDlgClass>()) {
    m_ui->setupUi(this);
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | kChatDialogFlags);
    setAttribute(Qt::WA_TranslucentBackground, true);
    setAutoFillBackground(false);
    connect(m_ui->pushButton_Send, &QPushButton::clicked, this, &ZR_AiChatUserEditDlg::pushBtnSend_clicked);
    connect(m_ui->pushButton_Cancel, &QPushButton::clicked, this,
            &ZR_AiChatUserEditDlg::pushBtnCancel_clicked);
}

ZR_AiChatUserEditDlg::~ZR_AiChatUserEditDlg() = default;

void ZR_AiChatUserEditDlg::setEditText(const QString& text) {
    m_ui->textEdit_UserEdit->setPlainText(text);
}

QString ZR_AiChatUserEditDlg::editText() const {
    return m_ui->textEdit_UserEdit->toPlainText();
}

void ZR_AiChatUserEditDlg::pushBtnSend_clicked(bool checked) {
    Q_UNUSED(checked)
    accept();
}

void ZR_AiChatUserEditDlg::pushBtnCancel_clicked() {
    reject();
}

void ZR_AiChatUserEditDlg::paintEvent(QPaintEvent* event) {
    Q_UNUSED(event)
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}
