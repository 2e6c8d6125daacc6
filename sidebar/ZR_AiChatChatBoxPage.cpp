#include "sidebar/ZR_AiChatChatBoxPage.h"

#include <QDateTime>
#include <QListWidget>
#include <algorithm>

#include "host/core/ZR_ZentriText.h"
#include "sidebar/ChatDateBucket.h"
#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"
#include "ui_ZR_AiChatChatBoxPage.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

// Padding of the list above and below its rows, in pixels.
constexpr int kListPadding = 18;

}  // namespace

ZR_AiChatChatBoxPage::ZR_AiChatChatBoxPage(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::ZR_AiChatChatBoxPageClass>()) {
    m_ui->setupUi(this);
    m_ui->listWidget_DatedChats->setStyleSheet(m_ui->listWidget_DatedChats->styleSheet() +
                                               ZR_AiChatChatBoxPageContentLabel::styleSheetText());
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

ZR_AiChatChatBoxPageContentLabel* ZR_AiChatChatBoxPage::makeEntry(const CString& sessionId,
                                                                  const CString& title) {
    auto* entry =
        new ZR_AiChatChatBoxPageContentLabel(this, ZR_AiChatChatBoxPageContentLabel::Sheet::Parents);
    entry->setSessionId(sessionId);
    entry->setTitle(title);
    return entry;
}

void ZR_AiChatChatBoxPage::addEntry(const CString& sessionId, const CString& title) {
    placeEntry(makeEntry(sessionId, title));
}

void ZR_AiChatChatBoxPage::addEntry(const CString& sessionId, const CString& title, int theme) {
    ZR_AiChatChatBoxPageContentLabel* entry = makeEntry(sessionId, title);
    // The entry has not been polished yet, so setting the properties is enough to apply the theme.
    entry->setProperty(kColorThemeProperty, theme);
    for (QObject* part : entry->findChildren<QObject*>()) {
        part->setProperty(kColorThemeProperty, theme);
    }
    placeEntry(entry);
}

void ZR_AiChatChatBoxPage::placeEntry(ZR_AiChatChatBoxPageContentLabel* entry) {
    auto* item = new QListWidgetItem(m_ui->listWidget_DatedChats);
    connect(entry, &ZR_AiChatChatBoxPageContentLabel::ContentMenu_deleteAction_clicked, this,
            &ZR_AiChatChatBoxPage::contentLabel_deleteAction_Clicked);
    m_ui->listWidget_DatedChats->setItemWidget(item, entry);
    m_rowHeightIsKnown = false;
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
    m_rowHeight = 0;
    for (int row = 0; row < list->count(); ++row) {
        m_rowHeight = std::max(m_rowHeight, list->sizeHintForRow(row));
    }
    // A row that has never been visible still has the height of its form, which is not its final height.
    m_rowHeightIsKnown = m_rowHeightIsKnown || visibleRows() == list->count();
    setHeightForRows();
}

int ZR_AiChatChatBoxPage::visibleRows() const {
    const QListWidget* list = m_ui->listWidget_DatedChats;
    int rows = 0;
    for (int row = 0; row < list->count(); ++row) {
        rows += list->item(row)->isHidden() ? 0 : 1;
    }
    return rows;
}

void ZR_AiChatChatBoxPage::setHeightForRows() {
    m_ui->listWidget_DatedChats->setMinimumHeight(m_rowHeight * visibleRows() + kListPadding);
}

void ZR_AiChatChatBoxPage::fitHeight() {
    if (m_rowHeightIsKnown) {
        setHeightForRows();
    } else {
        adjustHeight();
    }
}

QSize ZR_AiChatChatBoxPage::sizeHint() const {
    return {QWidget::sizeHint().width(), minimumSizeHint().height()};
}

void ZR_AiChatChatBoxPage::showAllEntries() {
    for (int row = 0; row < m_ui->listWidget_DatedChats->count(); ++row) {
        m_ui->listWidget_DatedChats->item(row)->setHidden(false);
    }
    fitHeight();
    show();
}

void ZR_AiChatChatBoxPage::applyFilter(const QString& text) {
    bool allHidden = true;
    for (int row = 0; row < m_ui->listWidget_DatedChats->count(); ++row) {
        const ZR_AiChatChatBoxPageContentLabel* entry = entryAt(row);
        const bool matches = entry != nullptr && entry->matchesSearch(text);
        m_ui->listWidget_DatedChats->item(row)->setHidden(!matches);
        allHidden = allHidden && !matches;
    }
    fitHeight();
    setVisible(!allHidden);
}

void ZR_AiChatChatBoxPage::selectSession(const QString& sessionId) {
    QListWidget* list = m_ui->listWidget_DatedChats;
    const CString wanted = toCString(sessionId);
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
            m_rowHeightIsKnown = false;
            return;
        }
    }
}
