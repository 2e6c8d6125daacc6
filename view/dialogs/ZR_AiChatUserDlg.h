#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class ZR_AiChatUserDlgClass;
}

/// Shows one command link and prints it on the host's command line when it is clicked. UI thread.
///
/// Part of the interface; nothing in the module opens it.
class ZR_AiChatUserDlg : public QDialog {
    Q_OBJECT

public:
    explicit ZR_AiChatUserDlg(QWidget* parent = nullptr);
    ~ZR_AiChatUserDlg() override;

signals:
    /// The link was clicked.
    void linkActivated(const QString& link);

private:
    std::unique_ptr<Ui::ZR_AiChatUserDlgClass> m_ui;
};
