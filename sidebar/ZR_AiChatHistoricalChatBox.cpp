#include "sidebar/ZR_AiChatHistoricalChatBox.h"

#include <QDateTime>
#include <QScrollArea>
#include <QVBoxLayout>
#include <utility>

#include "host/core/ZR_ZentriText.h"
#include "sidebar/ChatDateBucket.h"
#include "sidebar/ZR_AiChatChatBoxPage.h"
#include "ui_ZR_AiChatHistoricalChatBox.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

constexpr int kPageSpacing = 2;

}  // namespace

ZR_AiChatHistoricalChatBox::ZR_AiChatHistoricalChatBox(QWidget* parent)
    : QWidget(parent),
      m_ui(std::make_unique<Ui::ZR_AiChatHistoricalChatBoxClass>()),
      m_clock(&QDateTime::currentSecsSinceEpoch) {
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

ZR_AiChatHistoricalChatBox::~ZR_AiChatHistoricalChatBox() = default;

void ZR_AiChatHistoricalChatBox::setClock(std::function<qint64()> clock) {
    m_clock = std::move(clock);
}

void ZR_AiChatHistoricalChatBox::clearPages() {
    while (QLayoutItem* item = m_pageLayout->takeAt(0)) {
        if (QWidget* page = item->widget()) {
            m_pageLayout->removeWidget(page);
            page->setParent(nullptr);
            m_formerPages.emplace_back(page);
        }
        delete item;
    }
}

void ZR_AiChatHistoricalChatBox::loadSessions(const ZR_AiChatSessionList& records) {
    clearPages();
    QMap<QString, ZR_AiChatChatBoxPage*> pagesByLabel;
    std::vector<ZR_AiChatChatBoxPage*> pageOfRecord;
    for (INT_PTR i = 0; i < records.GetCount(); ++i) {
        const qint64 lastActivityTime = records.GetAt(i).GetUseTime();
        const qint64 now = m_clock();
        const QString label = DateBucketLabel(lastActivityTime, now);
        ZR_AiChatChatBoxPage*& page = pagesByLabel[label];
        if (page == nullptr) {
            page = new ZR_AiChatChatBoxPage(this);
            // Hidden until it is placed. A page that is never placed stays hidden.
            page->hide();
            page->setLabel(label);
            page->setPageTime(lastActivityTime, true, now);
            connect(page, &ZR_AiChatChatBoxPage::chatLabel_Clicked, this,
                    &ZR_AiChatHistoricalChatBox::chatPage_ChatLabelClicked);
        }
        pageOfRecord.push_back(page);
    }
    placePages(pagesByLabel);
    reapplyOwnTheme(this);
    const int theme = property(kColorThemeProperty).toInt();
    for (INT_PTR i = 0; i < records.GetCount(); ++i) {
        const ZR_AiChatSingleChatRecord& record = records.GetAt(i);
        pageOfRecord[static_cast<std::size_t>(i)]->addEntry(record.GetSessionId(), record.GetTitle(), theme);
    }
    for (ZR_AiChatChatBoxPage* page : pages()) {
        page->show();
        page->adjustHeight();
    }
    updateGeometry();
}

void ZR_AiChatHistoricalChatBox::placePages(QMap<QString, ZR_AiChatChatBoxPage*> pages) {
    const int passes = pages.size();
    for (int pass = 0; pass < passes; ++pass) {
        qint64 best = -1;
        QString bestLabel;
        for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
            if (page.value()->pageTime() >= best) {
                best = page.value()->pageTime();
                bestLabel = page.value()->labelText();
            }
        }
        // A page time below -1 is never the best, so its pass places nothing and the page is never shown.
        if (ZR_AiChatChatBoxPage* page = pages.take(bestLabel)) {
            m_pageLayout->addWidget(page);
        }
    }
}

std::vector<ZR_AiChatChatBoxPage*> ZR_AiChatHistoricalChatBox::pages() const {
    std::vector<ZR_AiChatChatBoxPage*> found;
    for (int i = 0; i < m_pageLayout->count(); ++i) {
        if (auto* page = qobject_cast<ZR_AiChatChatBoxPage*>(m_pageLayout->itemAt(i)->widget())) {
            found.push_back(page);
        }
    }
    return found;
}

void ZR_AiChatHistoricalChatBox::adjustPages() {
    for (ZR_AiChatChatBoxPage* page : pages()) {
        page->adjustHeight();
    }
}

void ZR_AiChatHistoricalChatBox::showAllEntries() {
    for (ZR_AiChatChatBoxPage* page : pages()) {
        page->showAllEntries();
    }
}

void ZR_AiChatHistoricalChatBox::applyFilter(const QString& text) {
    for (ZR_AiChatChatBoxPage* page : pages()) {
        page->applyFilter(text);
    }
}

void ZR_AiChatHistoricalChatBox::selectSession(const QString& sessionId) {
    for (ZR_AiChatChatBoxPage* page : pages()) {
        page->selectSession(sessionId);
    }
}

QString ZR_AiChatHistoricalChatBox::pageLabelOf(const QString& sessionId) const {
    for (const ZR_AiChatChatBoxPage* page : pages()) {
        if (page->containsSession(sessionId)) {
            return page->labelText();
        }
    }
    return QString();
}

void ZR_AiChatHistoricalChatBox::chatPage_ChatLabelClicked(QString sessionId) {
    emit historicalChat_Clicked(sessionId);
}
