#include "sidebar/ZR_AiChatSideBarSearchInputDlg.h"

#include "ui_ZR_AiChatSideBarSearchInputDlg.h"
#include "view/theme/ChatDialogFlags.h"

ZR_AiChatSideBarSearchInputDlg::ZR_AiChatSideBarSearchInputDlg(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::ZR_AiChatSideBarSearchInputDlgClass>()) {
    m_ui->setupUi(this);
    setWindowFlags(windowFlags() | kChatDialogFlags);
    setAttribute(Qt::WA_DeleteOnClose, true);
    m_ui->textEdit_SearchText->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_ui->textEdit_SearchText->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

ZR_AiChatSideBarSearchInputDlg::~ZR_AiChatSideBarSearchInputDlg() = default;

QString ZR_AiChatSideBarSearchInputDlg::searchText() const {
    return m_ui->textEdit_SearchText->toPlainText();
}
