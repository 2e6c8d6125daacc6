#include "sidebar/ChatEntryListWidget.h"

ChatEntryListWidget::ChatEntryListWidget(QWidget* parent) : QListWidget(parent) {}

void ChatEntryListWidget::updateGeometries() {
    const int width = contentsSize().width();
    QListWidget::updateGeometries();
    // The base class has placed the item widgets for the old width.
    if (contentsSize().width() != width) {
        updateEditorGeometries();
    }
}
