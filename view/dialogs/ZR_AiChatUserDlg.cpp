#include "view/dialogs/ZR_AiChatUserDlg.h"

#include <aced.h>

#include "host/core/ZR_ZentriText.h"
#include "ui_ZR_AiChatUserDlg.h"

ZR_AiChatUserDlg::ZR_AiChatUserDlg(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::ZR_AiChatUserDlgClass>()) {
    m_ui->setupUi(this);
    m_ui->label->setText(QStringLiteral("<a href='%1' style='color: blue; font-weight: bold'>%1</a>")
                             .arg(QStringLiteral("CIRCLE")));
    connect(m_ui->label, &QLabel::linkActivated, this, [this](const QString& link) {
        acutPrintf(_T("%s"), toCString(link).GetString());
        emit linkActivated(link);
    });
}

ZR_AiChatUserDlg::~ZR_AiChatUserDlg() = default;
