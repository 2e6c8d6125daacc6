#pragma once

#include <QDialog>
#include <QString>
#include <memory>

namespace Ui {
class ZR_AiChatSideBarSearchInputDlgClass;
}

/// A borderless window for a search text that deletes itself when it is closed. Nothing opens it at present:
/// the side bar searches with its own box.
class ZR_AiChatSideBarSearchInputDlg : public QDialog {
    Q_OBJECT

public:
    explicit ZR_AiChatSideBarSearchInputDlg(QWidget* parent = nullptr);
    ~ZR_AiChatSideBarSearchInputDlg() override;

    QString searchText() const;

private:
    std::unique_ptr<Ui::ZR_AiChatSideBarSearchInputDlgClass> m_ui;
};
