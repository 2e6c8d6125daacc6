#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class ZR_AiChatUserEditDlgClass;
}

/// Lets the user change an earlier question. Accepted by Send, rejected by Cancel. UI thread.
class ZR_AiChatUserEditDlg : public QDialog {
    Q_OBJECT

public:
    explicit ZR_AiChatUserEditDlg(QWidget* parent = nullptr);
    ~ZR_AiChatUserEditDlg() override;

    void setEditText(const QString& text);
    /// The plain text as it stands in the box, which may be empty.
    QString editText() const;

public slots:
    void pushBtnSend_clicked(bool checked);
    void pushBtnCancel_clicked();

protected:
    /// A translucent window gets no ground from its style sheet by itself.
    void paintEvent(QPaintEvent* event) override;

private:
    std::unique_ptr<Ui::ZR_AiChatUserEditDlgClass> m_ui;
};
