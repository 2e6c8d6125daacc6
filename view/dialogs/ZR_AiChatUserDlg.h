#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class ZR_AiChatUserDlgClass;
}

/// Shows one command link and prints it on the host's command line when it is clicked. Nothing opens it at
/// present; it is kept so that the set of dialogs stays whole.
class ZR_AiChatUserDlg : public QDialog {
    Q_OBJECT

public:
    explicit ZR_AiChatUserDlg(QWidget* parent = nullptr);
    ~ZR_AiChatUserDlg() override;

signals:
    void linkActivated(const QString& link);

private:
    std::unique_ptr<Ui::ZR_AiChatUserDlgClass> m_ui;
};
