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

/// One entry, with its own style sheet.
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

/// The plain rules for the history, step by step: one style sheet per entry, and the theme is applied to
/// everything at the end. The box of the module must look the same, pixel for pixel, and its benchmarks
/// compare against this one.
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
