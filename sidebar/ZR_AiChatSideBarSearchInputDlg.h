#pragma once

#include <QDialog>
#include <QString>
#include <memory>

namespace Ui {
class ZR_AiChatSideBarSearchInputDlgClass;
}

/// A borderless input window for a search text that deletes itself when it is closed. UI thread.
///
/// Part of the interface; nothing in the module opens it.
class ZR_AiChatSideBarSearchInputDlg : public QDialog {
    Q_OBJECT

public:
    explicit ZR_AiChatSideBarSearchInputDlg(QWidget* parent = nullptr);
    ~ZR_AiChatSideBarSearchInputDlg() override;

    QString searchText() const;

private:
    std::unique_ptr<Ui::ZR_AiChatSideBarSearchInputDlgClass> m_ui;
};
