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
    /// Which widget has the style sheet of an entry. Parsing one per entry dominates loading a long history,
    /// so the list of a page has one for all its entries.
    enum class Sheet {
        Own,  ///< Part of the interface; nothing in the module uses it.
        Parents,
    };

    explicit ZR_AiChatChatBoxPageContentLabel(QWidget* parent = nullptr, Sheet sheet = Sheet::Own);
    ~ZR_AiChatChatBoxPageContentLabel() override;

    /// Style-sheet rules of an entry, to be set on the entry or on an ancestor.
    static QString styleSheetText();

    void setSessionId(const CString& sessionId);
    CString sessionId() const { return m_sessionId; }
    /// The title is shown unchanged. A long title is clipped by the layout.
    void setTitle(const CString& title);
    /// Part of the interface; nothing in the module calls it.
    CString title() const { return m_title; }

    /// True if a message of the session contains the text, case-sensitive. Titles are not searched. A session
    /// that the manager does not know never matches.
    bool matchesSearch(const QString& text) const;

signals:
    void ContentMenu_deleteAction_clicked();

public slots:
    /// Opens the options menu and blocks until it closes. The entry may be destroyed meanwhile.
    void toolButton_options_clicked(bool checked);

private:
    std::unique_ptr<Ui::ZR_AiChatChatBoxPageContentLabelClass> m_ui;
    CString m_sessionId;
    CString m_title;
};
