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
    /// Sets the time that orders the pages, in seconds since 1970, as it is or brought down to the start of
    /// its day or month as seen at `now`. A time that cannot be converted leaves the page's time as it was.
    void setPageTime(qint64 time, bool normalise, qint64 now);
    void setPageTime(qint64 time, bool normalise);
    qint64 pageTime() const { return m_pageTime; }

    void addEntry(const CString& sessionId, const CString& title);
    /// Adds an entry that is in the theme from the start. Costs less than to add it and hand it the theme.
    void addEntry(const CString& sessionId, const CString& title, int theme);
    bool containsSession(const QString& sessionId) const;
    /// Gives the list the height of the rows it shows.
    void adjustHeight();
    void showAllEntries();
    /// Shows the entries whose session contains the text; a page without any is hidden.
    void applyFilter(const QString& text);
    /// Marks the session's entry, or none.
    void selectSession(const QString& sessionId);

    /// As tall as the rows need: the list by itself would ask for more when it holds one or two.
    QSize sizeHint() const override;

signals:
    void chatLabel_Clicked(QString sessionId);

public slots:
    /// The page cannot be folded; kept for the day it can.
    void onPushButtonFoldClicked();
    void listWidget_itemClicked(QListWidgetItem* item);
    /// Takes the entry that sent the signal off the page. The session itself is not touched, so the entry is
    /// back at the next load.
    void contentLabel_deleteAction_Clicked();

private:
    ZR_AiChatChatBoxPageContentLabel* makeEntry(const CString& sessionId, const CString& title);
    void placeEntry(ZR_AiChatChatBoxPageContentLabel* entry);
    ZR_AiChatChatBoxPageContentLabel* entryAt(int row) const;
    int visibleRows() const;
    void setHeightForRows();
    /// As adjustHeight(), but leaves it to the list when to lay its rows out.
    void fitHeight();

    std::unique_ptr<Ui::ZR_AiChatChatBoxPageClass> m_ui;
    // The largest of all rows, hidden ones too; not known while rows have come or gone since it was asked
    // for.
    int m_rowHeight = 0;
    bool m_rowHeightIsKnown = false;
    qint64 m_pageTime = 0;  // after every valid page, should the time not be convertible
};
