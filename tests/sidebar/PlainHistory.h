#pragma once

#include <QMap>
#include <QVector>
#include <QWidget>
#include <memory>
#include <vector>

#include "chat/ZR_AiChatSingleChatRecord.h"

class QListWidget;
class QVBoxLayout;
namespace Ui {
class ZR_AiChatHistoricalChatBoxClass;
class ZR_AiChatChatBoxPageClass;
class ZR_AiChatChatBoxPageContentLabelClass;
}  // namespace Ui

/// One entry with a style sheet of its own.
class PlainHistoryEntry : public QWidget {
public:
    PlainHistoryEntry(QWidget* parent, const CString& sessionId, const CString& title);
    ~PlainHistoryEntry() override;

    bool matchesSearch(const QString& text) const;

    const CString sessionId;

private:
    std::unique_ptr<Ui::ZR_AiChatChatBoxPageContentLabelClass> m_ui;
};

/// One date page.
class PlainHistoryPage : public QWidget {
public:
    PlainHistoryPage(QWidget* parent, const QString& label, qint64 pageTime);
    ~PlainHistoryPage() override;

    void addEntry(const CString& sessionId, const CString& title);
    void adjustHeight();
    void showAllEntries();
    void applyFilter(const QString& text);
    QSize sizeHint() const override;

    QListWidget* list() const;
    PlainHistoryEntry* entryAt(int row) const;

    const QString label;
    const qint64 pageTime;

private:
    std::unique_ptr<Ui::ZR_AiChatChatBoxPageClass> m_ui;
};

/// The history word for word: one step after the other, a style sheet for every entry, the theme handed to
/// everything once all is there. What the module's own box must look like in every pixel, and what it is
/// measured against.
class PlainHistory : public QWidget {
public:
    PlainHistory();
    ~PlainHistory() override;

    void loadSessions(const ZR_AiChatSessionList& records, qint64 now);
    void applyFilter(const QString& text);
    void showAllEntries();

    QVector<PlainHistoryPage*> pages() const;

private:
    std::unique_ptr<Ui::ZR_AiChatHistoricalChatBoxClass> m_ui;
    QVBoxLayout* m_pageLayout = nullptr;
    std::vector<std::unique_ptr<QWidget>> m_formerPages;
};
