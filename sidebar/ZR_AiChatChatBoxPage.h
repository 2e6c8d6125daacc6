#pragma once

#include <afx.h>

#include <QString>
#include <QWidget>
#include <memory>

class QListWidgetItem;
class ZR_AiChatChatBoxPageContentLabel;
namespace Ui {
class ZR_AiChatChatBoxPageClass;
}

/// One date page of the history: a heading and its sessions. UI thread.
class ZR_AiChatChatBoxPage : public QWidget {
    Q_OBJECT

public:
    explicit ZR_AiChatChatBoxPage(QWidget* parent = nullptr);
    ~ZR_AiChatChatBoxPage() override;

    void setLabel(const QString& text);
    QString labelText() const;
    /// Sets the sort key of the page, in seconds since 1970: the time as it is, or normalised for `now` by
    /// normalisedPageTime(). If that fails, the sort key is left unchanged.
    void setPageTime(qint64 time, bool normalise, qint64 now);
    /// Part of the interface; nothing in the module calls it.
    void setPageTime(qint64 time, bool normalise);
    qint64 pageTime() const { return m_pageTime; }

    /// Adds an entry in the light theme. Part of the interface; nothing in the module calls it.
    void addEntry(const CString& sessionId, const CString& title);
    /// Adds an entry in the theme. Cheaper than adding it and applying the theme afterwards.
    void addEntry(const CString& sessionId, const CString& title, int theme);
    bool containsSession(const QString& sessionId) const;
    /// Sets the minimum height of the list to the height of its visible rows.
    void adjustHeight();
    void showAllEntries();
    /// Shows only the entries whose session contains the text, and hides the page if there are none.
    void applyFilter(const QString& text);
    /// Selects the session's entry and clears any other selection.
    void selectSession(const QString& sessionId);

    /// As tall as the rows need; the size hint of the list alone is taller than one or two rows.
    QSize sizeHint() const override;

signals:
    void chatLabel_Clicked(QString sessionId);

public slots:
    /// Does nothing. Part of the interface; nothing in the module calls it.
    void onPushButtonFoldClicked();
    void listWidget_itemClicked(QListWidgetItem* item);
    /// Removes the row of the entry that sent the signal. The session itself is kept, so the entry is back
    /// after the next load.
    void contentLabel_deleteAction_Clicked();

private:
    ZR_AiChatChatBoxPageContentLabel* makeEntry(const CString& sessionId, const CString& title);
    void placeEntry(ZR_AiChatChatBoxPageContentLabel* entry);
    ZR_AiChatChatBoxPageContentLabel* entryAt(int row) const;
    int visibleRows() const;
    void setHeightForRows();
    /// Like adjustHeight(), but does not force the list to lay out its rows if the row height is known.
    void fitHeight();

    std::unique_ptr<Ui::ZR_AiChatChatBoxPageClass> m_ui;
    // Height of the tallest row, hidden rows included. Not known after rows have been added or removed.
    int m_rowHeight = 0;
    bool m_rowHeightIsKnown = false;
    // Zero sorts a page whose time cannot be converted after all valid pages.
    qint64 m_pageTime = 0;
};
