#include "tests/sidebar/PlainHistory.h"

#include <QListWidget>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

#include "chat/ZR_AiChatManager.h"
#include "host/core/ZR_ZentriText.h"
#include "sidebar/ChatDateBucket.h"
#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"
#include "ui_ZR_AiChatChatBoxPage.h"
#include "ui_ZR_AiChatChatBoxPageContentLabel.h"
#include "ui_ZR_AiChatHistoricalChatBox.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

PlainHistoryEntry::PlainHistoryEntry(QWidget* parent, const CString& id, const CString& title)
    : QWidget(parent), sessionId(id), m_ui(std::make_unique<Ui::ZR_AiChatChatBoxPageContentLabelClass>()) {
    m_ui->setupUi(this);
    setStyleSheet(ZR_AiChatChatBoxPageContentLabel::styleSheetText());
    m_ui->frame_bottomLabel->setText(toQString(title));
}

PlainHistoryEntry::~PlainHistoryEntry() = default;

bool PlainHistoryEntry::matchesSearch(const QString& text) const {
    ZR_AiChatSingleChatRecord record;
    if (!ZR_AiChatManager::instance().findSession(sessionId, record)) {
        return false;
    }
    SingleChatUnitList units;
    record.GetUnits(units);
    for (INT_PTR i = 0; i < units.GetCount(); ++i) {
        if (toQString(units[i].message).contains(text)) {
            return true;
        }
    }
    return false;
}

PlainHistoryPage::PlainHistoryPage(QWidget* parent, const QString& pageLabel, qint64 time)
    : QWidget(parent),
      label(pageLabel),
      pageTime(time),
      m_ui(std::make_unique<Ui::ZR_AiChatChatBoxPageClass>()) {
    m_ui->setupUi(this);
    m_ui->label_PageFilterDate->setText(label);
}

PlainHistoryPage::~PlainHistoryPage() = default;

QListWidget* PlainHistoryPage::list() const {
    return m_ui->listWidget_DatedChats;
}

PlainHistoryEntry* PlainHistoryPage::entryAt(int row) const {
    return static_cast<PlainHistoryEntry*>(list()->itemWidget(list()->item(row)));
}

void PlainHistoryPage::addEntry(const CString& sessionId, const CString& title) {
    auto* entry = new PlainHistoryEntry(this, sessionId, title);
    list()->setItemWidget(new QListWidgetItem(list()), entry);
}

void PlainHistoryPage::adjustHeight() {
    constexpr int kPadding = 18;
    list()->doItemsLayout();
    int rowHeight = 0;
    int visibleRows = 0;
    for (int row = 0; row < list()->count(); ++row) {
        rowHeight = std::max(rowHeight, list()->sizeHintForRow(row));
        visibleRows += list()->item(row)->isHidden() ? 0 : 1;
    }
    list()->setMinimumHeight(rowHeight * visibleRows + kPadding);
}

void PlainHistoryPage::showAllEntries() {
    for (int row = 0; row < list()->count(); ++row) {
        list()->item(row)->setHidden(false);
    }
    adjustHeight();
    show();
}

void PlainHistoryPage::applyFilter(const QString& text) {
    bool allHidden = true;
    for (int row = 0; row < list()->count(); ++row) {
        const bool matches = entryAt(row)->matchesSearch(text);
        list()->item(row)->setHidden(!matches);
        allHidden = allHidden && !matches;
    }
    adjustHeight();
    setVisible(!allHidden);
}

QSize PlainHistoryPage::sizeHint() const {
    return {QWidget::sizeHint().width(), minimumSizeHint().height()};
}

PlainHistory::PlainHistory() : m_ui(std::make_unique<Ui::ZR_AiChatHistoricalChatBoxClass>()) {
    constexpr int kPageSpacing = 2;
    m_ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground, true);
    auto* content = new QWidget;
    content->setObjectName(QStringLiteral("pageContents"));
    m_pageLayout = new QVBoxLayout(content);
    m_pageLayout->setContentsMargins(0, 0, 0, 0);
    m_pageLayout->setSpacing(kPageSpacing);
    m_pageLayout->setAlignment(Qt::AlignTop);
    m_ui->scrollArea->setWidget(content);
    m_ui->scrollArea->viewport()->setObjectName(QStringLiteral("pageViewport"));
    m_ui->scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

PlainHistory::~PlainHistory() = default;

void PlainHistory::loadSessions(const ZR_AiChatSessionList& records, qint64 now) {
    while (QLayoutItem* item = m_pageLayout->takeAt(0)) {
        if (QWidget* page = item->widget()) {
            m_pageLayout->removeWidget(page);
            page->setParent(nullptr);
            m_formerPages.emplace_back(page);
        }
        delete item;
    }
    QMap<QString, PlainHistoryPage*> pagesByLabel;
    for (INT_PTR i = 0; i < records.GetCount(); ++i) {
        const ZR_AiChatSingleChatRecord& record = records.GetAt(i);
        const QString label = DateBucketLabel(record.GetUseTime(), now);
        if (!pagesByLabel.contains(label)) {
            qint64 pageTime = 0;
            normalisedPageTime(record.GetUseTime(), now, pageTime);
            pagesByLabel[label] = new PlainHistoryPage(this, label, pageTime);
            pagesByLabel[label]->hide();
        }
        pagesByLabel[label]->addEntry(record.GetSessionId(), record.GetTitle());
    }
    const int passes = pagesByLabel.size();
    for (int pass = 0; pass < passes; ++pass) {
        qint64 best = -1;
        QString bestLabel;
        for (const PlainHistoryPage* page : qAsConst(pagesByLabel)) {
            if (page->pageTime >= best) {
                best = page->pageTime;
                bestLabel = page->label;
            }
        }
        if (PlainHistoryPage* page = pagesByLabel.take(bestLabel)) {
            m_pageLayout->addWidget(page);
            page->show();
            page->adjustHeight();
        }
    }
    reapplyOwnTheme(this);
    updateGeometry();
}

QVector<PlainHistoryPage*> PlainHistory::pages() const {
    QVector<PlainHistoryPage*> pages;
    for (int i = 0; i < m_pageLayout->count(); ++i) {
        pages.append(static_cast<PlainHistoryPage*>(m_pageLayout->itemAt(i)->widget()));
    }
    return pages;
}

void PlainHistory::applyFilter(const QString& text) {
    for (PlainHistoryPage* page : pages()) {
        page->applyFilter(text);
    }
}

void PlainHistory::showAllEntries() {
    for (PlainHistoryPage* page : pages()) {
        page->showAllEntries();
    }
}
