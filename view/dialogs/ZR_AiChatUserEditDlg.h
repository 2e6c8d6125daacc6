#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class ZR_AiChatUserEditDlgClass;
}

/// Lets the user change an earlier question. Send accepts the dialog, Cancel rejects it. UI thread.
class ZR_AiChatUserEditDlg : public QDialog {
    Q_OBJECT

public:
    explicit ZR_AiChatUserEditDlg(QWidget* parent = nullptr);
    ~ZR_AiChatUserEditDlg() override;

    void setEditText(const QString& text);
    /// The current plain text of the box; may be empty.
    QString editText() const;

public slots:
    void pushBtnSend_clicked(bool checked);
    void pushBtnCancel_clicked();

protected:
    /// Draws the style-sheet background, which a translucent window does not paint by itself.
    void paintEvent(QPaintEvent* event) override;

private:
    std::unique_ptr<Ui::ZR_AiChatUserEditDlgClass> m_ui;
};
