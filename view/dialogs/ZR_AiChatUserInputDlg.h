#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class ZR_AiChatUserInputDlgClass;
}

/// A floating input box that deletes itself when it is closed. UI thread.
///
/// Part of the interface; nothing in the module opens it.
class ZR_AiChatUserInputDlg : public QDialog {
    Q_OBJECT

public:
    explicit ZR_AiChatUserInputDlg(QWidget* parent = nullptr);
    ~ZR_AiChatUserInputDlg() override;

private:
    std::unique_ptr<Ui::ZR_AiChatUserInputDlgClass> m_ui;
};
