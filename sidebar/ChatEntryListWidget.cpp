#include "sidebar/ChatEntryListWidget.h"

ChatEntryListWidget::ChatEntryListWidget(QWidget* parent) : QListWidget(parent) {}

void ChatEntryListWidget::updateGeometries() {
    const int width = contentsSize().width();
    QListWidget::updateGeometries();
    // The entries were placed before the list took its new width.
    if (contentsSize().width() != width) {
        updateEditorGeometries();
    }
}
