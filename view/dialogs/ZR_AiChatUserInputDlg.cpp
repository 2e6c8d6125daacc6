#include "view/dialogs/ZR_AiChatUserInputDlg.h"

#include "ui_ZR_AiChatUserInputDlg.h"
#include "view/theme/ChatDialogFlags.h"

ZR_AiChatUserInputDlg::ZR_AiChatUserInputDlg(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::ZR_AiChatUserInputDlgClass>()) {
    m_ui->setupUi(this);
    setWindowFlags(windowFlags() | kChatDialogFlags);
    setAttribute(Qt::WA_DeleteOnClose, true);
}

ZR_AiChatUserInputDlg::~ZR_AiChatUserInputDlg() = default;
