#pragma once

#include <afx.h>

#include <QString>
#include <QWidget>
#include <memory>

namespace Ui {
class ZR_AiChatChatBoxPageContentLabelClass;
}

/// One session in a date page: its title, and a button with a menu. UI thread.
class ZR_AiChatChatBoxPageContentLabel : public QWidget {
    Q_OBJECT

public:
    /// Who brings the style sheet. Parsing one for every entry is what a long history spends its time on, so
    /// a page brings one for all of its entries.
    enum class Sheet { Own, Parents };

    explicit ZR_AiChatChatBoxPageContentLabel(QWidget* parent = nullptr, Sheet sheet = Sheet::Own);
    ~ZR_AiChatChatBoxPageContentLabel() override;

    /// The rules for an entry, for itself or for a widget that has entries below it.
    static QString styleSheetText();

    void setSessionId(const CString& sessionId);
    CString sessionId() const { return m_sessionId; }
    /// The title is shown as it is, however long.
    void setTitle(const CString& title);
    CString title() const { return m_title; }

    /// True when a message of the session contains the text, in the same case. Titles are not searched, and a
    /// session that the manager does not know never matches.
    bool matchesSearch(const QString& text) const;

signals:
    void ContentMenu_deleteAction_clicked();

public slots:
    void toolButton_options_clicked(bool checked);

private:
    std::unique_ptr<Ui::ZR_AiChatChatBoxPageContentLabelClass> m_ui;
    CString m_sessionId;
    CString m_title;
};
