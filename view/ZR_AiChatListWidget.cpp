#include "view/ZR_AiChatListWidget.h"

#include <QDateTime>
#include <QMetaObject>
#include <QSet>
#include <QVariant>

#include "view/bubble/QNChatMessage.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

constexpr QSize kDefaultSize(600, 400);

QString currentTimeText() {
    return QString::number(QDateTime::currentSecsSinceEpoch());
}

}  // namespace

ZR_AiChatListWidget::ZR_AiChatListWidget(QWidget* parent) : QListWidget(parent) {
    if (objectName().isEmpty()) {
        setObjectName(QStringLiteral("ZR_AiChatListWidgetClass"));
    }
    resize(kDefaultSize);
    setWindowTitle(QStringLiteral("ZR_AiChatListWidget"));
    // Part of the interface; nothing in the module has a slot that it connects.
    QMetaObject::connectSlotsByName(this);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);

    // The bubbles of removed rows live until their deferred delete, and a late piece may still reach them.
    connect(model(), &QAbstractItemModel::modelAboutToBeReset, this,
            &ZR_AiChatListWidget::clearAllItemProperties);
    connect(model(), &QAbstractItemModel::rowsAboutToBeRemoved, this,
            &ZR_AiChatListWidget::clearItemProperties);
}

ZR_AiChatListWidget::~ZR_AiChatListWidget() {
    // The base class resets the model once more, after the viewport has been destroyed.
    model()->disconnect(this);
}

void ZR_AiChatListWidget::addQuestion(const QString& text) {
    auto* item = new QListWidgetItem(this);
    setupItem(new QNChatMessage(this), item, text, currentTimeText(), QNChatMessage::Question);
}

void ZR_AiChatListWidget::addAnswer(const QString& text) {
    auto* item = new QListWidgetItem(this);
    setupItem(new QNChatMessage(parentWidget()), item, text, currentTimeText(), QNChatMessage::Answer);
}

QNChatMessage* ZR_AiChatListWidget::addLoadingAnswer() {
    auto* bubble = new QNChatMessage(this);
    bubble->startAnswerLoading();
    auto* item = new QListWidgetItem(this);
    setupItem(bubble, item, QString(), currentTimeText(), QNChatMessage::Answer);
    return bubble;
}

void ZR_AiChatListWidget::setupItem(QNChatMessage* bubble, QListWidgetItem* item, const QString& text,
                                    const QString& time, int kind) {
    bubble->setFixedWidth(width());
    const QSize size = bubble->fontRect(text);
    item->setSizeHint(size);
    bubble->setText(text, time, size, kind);
    setItemWidget(item, bubble);
    bubble->setProperty(kListItemProperty, QVariant::fromValue(static_cast<void*>(item)));
    bubble->setColorTheme(property(kColorThemeProperty).toInt());
    connect(this, &ZR_AiChatListWidget::ZR_ListWidget_ColorThemeChanged, bubble,
            &QNChatMessage::setColorTheme);
}

void ZR_AiChatListWidget::refreshItem(QListWidgetItem* item) {
    if (QNChatMessage* bubble = bubbleOf(item)) {
        disconnect(this, &ZR_AiChatListWidget::ZR_ListWidget_ColorThemeChanged, bubble, nullptr);
        setupItem(bubble, item, bubble->msgText(), bubble->timeText(), bubble->userType());
    }
}

void ZR_AiChatListWidget::refreshLastItem() {
    if (count() == 0) {
        return;
    }
    refreshItem(item(count() - 1));
    scheduleDelayedItemsLayout();
}

void ZR_AiChatListWidget::relayoutAll() {
    for (int row = 0; row < count(); ++row) {
        refreshItem(item(row));
    }
    scheduleDelayedItemsLayout();
}

void ZR_AiChatListWidget::onStreamProcess(bool flag) {
    if (flag) {
        return;
    }
    refreshLastItem();
    scheduleDelayedItemsLayout();
    scrollToBottom();
}

QNChatMessage* ZR_AiChatListWidget::bubbleOf(QListWidgetItem* item) const {
    return qobject_cast<QNChatMessage*>(itemWidget(item));
}

void ZR_AiChatListWidget::clearAllItemProperties() {
    clearItemProperties(QModelIndex(), 0, count() - 1);
}

void ZR_AiChatListWidget::clearItemProperties(const QModelIndex& parent, int first, int last) {
    Q_UNUSED(parent)
    QSet<void*> items;
    for (int row = first; row <= last; ++row) {
        items.insert(item(row));
    }
    // itemWidget() may already be null for these rows, so look the bubbles up among the children.
    for (QNChatMessage* bubble :
         viewport()->findChildren<QNChatMessage*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (items.contains(bubble->property(kListItemProperty).value<void*>())) {
            bubble->setProperty(kListItemProperty, QVariant());
        }
    }
}
