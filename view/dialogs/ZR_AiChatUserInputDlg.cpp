#include "view/dialogs/ZR_AiChatUserInputDlg.h"

#include "ui_ZR_AiChatUserInputDlg.h"

ZR_AiChatUserInputDlg::ZR_AiChatUserInputDlg(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::ZR_AiChatUserInputDlgClass>()) {
    m_ui->setupUi(this);
    // The splash-screen type is what the window-type bits come to when all of them are set.
    setWindowFlags(windowFlags() | Qt::WindowStaysOnTopHint | Qt::SplashScreen);
    setAttribute(Qt::WA_DeleteOnClose, true);
}

ZR_AiChatUserInputDlg::~ZR_AiChatUserInputDlg() = default;
