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

    /// Rebuilds all pages. Entries keep the list's order within a page. The earlier pages leave the layout
    /// but live as long as the box: one of them may have its menu open right now.
    void loadSessions(const ZR_AiChatSessionList& records);
    void adjustPages();
    void showAllEntries();
    void applyFilter(const QString& text);
    /// Heading of the first page that lists the session; empty when none does.
    QString pageLabelOf(const QString& sessionId) const;
    /// Makes the session's entry the only marked one.
    void selectSession(const QString& sessionId);

    /// Replaces the clock that tells which day is today, in seconds since 1970; the system's clock by
    /// default.
    void setClock(std::function<qint64()> clock);

    /// As small as can be: the side bar's size policy makes a minimum of the hint, and a long history would
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
