#pragma once

#include <QMap>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "chat/ZR_AiChatSingleChatRecord.h"

class QVBoxLayout;
class ZR_AiChatChatBoxPage;
namespace Ui {
class ZR_AiChatHistoricalChatBoxClass;
}

/// The date pages of the history, newest first. UI thread.
class ZR_AiChatHistoricalChatBox : public QWidget {
    Q_OBJECT

public:
    explicit ZR_AiChatHistoricalChatBox(QWidget* parent = nullptr);
    ~ZR_AiChatHistoricalChatBox() override;

    /// Rebuilds all pages. Within a page the entries have the order of the list. The former pages are removed
    /// from the layout but live as long as the box, because one of them may have its menu open.
    void loadSessions(const ZR_AiChatSessionList& records);
    /// Fits every page to the entries it shows.
    void adjustPages();
    void showAllEntries();
    void applyFilter(const QString& text);
    /// Heading of the first page that lists the session; empty if there is none.
    QString pageLabelOf(const QString& sessionId) const;
    /// Selects the session's entry and clears any other selection.
    void selectSession(const QString& sessionId);

    /// Replaces the system clock as the source of the current time, in seconds since 1970. For tests.
    void setClock(std::function<qint64()> clock);

    /// The minimum size, because the side bar's size policy uses the hint as a minimum: a long history would
    /// make the panel taller than a low palette and push the input box out of sight.
    QSize sizeHint() const override { return minimumSizeHint(); }

signals:
    void historicalChat_Clicked(QString sessionId);

public slots:
    void chatPage_ChatLabelClicked(QString sessionId);

private:
    void clearPages();
    void placePages(QMap<QString, ZR_AiChatChatBoxPage*> pages);
    std::vector<ZR_AiChatChatBoxPage*> pages() const;

    std::unique_ptr<Ui::ZR_AiChatHistoricalChatBoxClass> m_ui;
    QVBoxLayout* m_pageLayout = nullptr;
    std::function<qint64()> m_clock;
    std::vector<std::unique_ptr<QWidget>> m_formerPages;
};
