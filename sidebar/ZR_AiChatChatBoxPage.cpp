#include "sidebar/ZR_AiChatChatBoxPage.h"

#include <QDateTime>
#include <QListWidget>
#include <algorithm>

#include "host/core/ZR_ZentriText.h"
#include "sidebar/ChatDateBucket.h"
#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"
#include "ui_ZR_AiChatChatBoxPage.h"

namespace {

// What the list needs beside its rows: its padding above and below.
constexpr int kListPadding = 18;

}  // namespace

ZR_AiChatChatBoxPage::ZR_AiChatChatBoxPage(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::ZR_AiChatChatBoxPageClass>()) {
    m_ui->setupUi(this);
    connect(m_ui->listWidget_DatedChats, &QListWidget::itemClicked, this,
            &ZR_AiChatChatBoxPage::listWidget_itemClicked);
}

ZR_AiChatChatBoxPage::~ZR_AiChatChatBoxPage() = default;

void ZR_AiChatChatBoxPage::setLabel(const QString& text) {
    m_ui->label_PageFilterDate->setText(text);
}

QString ZR_AiChatChatBoxPage::labelText() const {
    return m_ui->label_PageFilterDate->text();
}

void ZR_AiChatChatBoxPage::setPageTime(qint64 time, bool normalise) {
    setPageTime(time, normalise, QDateTime::currentSecsSinceEpoch());
}

void ZR_AiChatChatBoxPage::setPageTime(qint64 time, bool normalise, qint64 now) {
    if (normalise) {
        normalisedPageTime(time, now, m_pageTime);
    } else {
        m_pageTime = time;
    }
}

void ZR_AiChatChatBoxPage::addEntry(const CString& sessionId, const CString& title) {
    auto* entry = new ZR_AiChatChatBoxPageContentLabel(this);
    entry->setSessionId(sessionId);
    entry->setTitle(title);
    auto* item = new QListWidgetItem(m_ui->listWidget_DatedChats);
    connect(entry, &ZR_AiChatChatBoxPageContentLabel::ContentMenu_deleteAction_clicked, this,
            &ZR_AiChatChatBoxPage::contentLabel_deleteAction_Clicked);
    m_ui->listWidget_DatedChats->setItemWidget(item, entry);
}

ZR_AiChatChatBoxPageContentLabel* ZR_AiChatChatBoxPage::entryAt(int row) const {
    const QListWidget* list = m_ui->listWidget_DatedChats;
    return qobject_cast<ZR_AiChatChatBoxPageContentLabel*>(list->itemWidget(list->item(row)));
}

bool ZR_AiChatChatBoxPage::containsSession(const QString& sessionId) const {
    const CString wanted = toCString(sessionId);
    for (int row = 0; row < m_ui->listWidget_DatedChats->count(); ++row) {
        const ZR_AiChatChatBoxPageContentLabel* entry = entryAt(row);
        if (entry != nullptr && entry->sessionId() == wanted) {
            return true;
        }
    }
    return false;
}

void ZR_AiChatChatBoxPage::adjustHeight() {
    QListWidget* list = m_ui->listWidget_DatedChats;
    list->doItemsLayout();
    int rowHeight = 0;
    int visibleRows = 0;
    for (int row = 0; row < list->count(); ++row) {
        rowHeight = std::max(rowHeight, list->sizeHintForRow(row));
        if (!list->item(row)->isHidden()) {
            ++visibleRows;
        }
    }
    list->setMinimumHeight(rowHeight * visibleRows + kListPadding);
}

QSize ZR_AiChatChatBoxPage::sizeHint() const {
    return {QWidget::sizeHint().width(), minimumSizeHint().height()};
}

void ZR_AiChatChatBoxPage::showAllEntries() {
    for (int row = 0; row < m_ui->listWidget_DatedChats->count(); ++row) {
        m_ui->listWidget_DatedChats->item(row)->setHidden(false);
    }
    adjustHeight();
    show();
}

void ZR_AiChatChatBoxPage::applyFilter(const QString& text) {
    QListWidget* list = m_ui->listWidget_DatedChats;
    bool allHidden = true;
    for (int row = 0; row < list->count(); ++row) {
        const ZR_AiChatChatBoxPageContentLabel* entry = entryAt(row);
        const bool matches = entry != nullptr && entry->matchesSearch(text);
        list->item(row)->setHidden(!matches);
        allHidden = allHidden && !matches;
    }
    adjustHeight();
    setVisible(!allHidden);
}

void ZR_AiChatChatBoxPage::selectSession(const QString& sessionId) {
    QListWidget* list = m_ui->listWidget_DatedChats;
    const CString wanted = toCString(sessionId);
    list->clearSelection();
    list->setCurrentItem(nullptr);
    for (int row = 0; row < list->count(); ++row) {
        const ZR_AiChatChatBoxPageContentLabel* entry = entryAt(row);
        if (entry != nullptr && entry->sessionId() == wanted) {
            list->setCurrentRow(row);
            return;
        }
    }
}

void ZR_AiChatChatBoxPage::onPushButtonFoldClicked() {}

void ZR_AiChatChatBoxPage::listWidget_itemClicked(QListWidgetItem* item) {
    const auto* entry =
        qobject_cast<ZR_AiChatChatBoxPageContentLabel*>(m_ui->listWidget_DatedChats->itemWidget(item));
    if (entry != nullptr) {
        emit chatLabel_Clicked(toQString(entry->sessionId()));
    }
}

void ZR_AiChatChatBoxPage::contentLabel_deleteAction_Clicked() {
    const auto* entry = qobject_cast<ZR_AiChatChatBoxPageContentLabel*>(sender());
    if (entry == nullptr) {
        return;
    }
    QListWidget* list = m_ui->listWidget_DatedChats;
    for (int row = 0; row < list->count(); ++row) {
        if (entryAt(row) == entry) {
            QListWidgetItem* item = list->item(row);
            list->removeItemWidget(item);
            delete item;
            return;
        }
    }
}
