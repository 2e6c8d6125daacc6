#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class ZR_AiChatUserInputDlgClass;
}

/// A floating input box that deletes itself when it is closed. Nothing opens it at present; it is kept so
/// that the set of dialogs stays whole.
class ZR_AiChatUserInputDlg : public QDialog {
    Q_OBJECT

public:
    explicit ZR_AiChatUserInputDlg(QWidget* parent = nullptr);
    ~ZR_AiChatUserInputDlg() override;

private:
    std::unique_ptr<Ui::ZR_AiChatUserInputDlgClass> m_ui;
};
