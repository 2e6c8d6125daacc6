#pragma once

#include <QLayout>
#include <QList>
#include <QScrollArea>

#include "sidebar/ZR_AiChatChatBoxPage.h"
#include "sidebar/ZR_AiChatHistoricalChatBox.h"

/// Layout of the date pages.
inline QLayout* pageLayoutOf(const ZR_AiChatHistoricalChatBox& box) {
    return box.findChild<QScrollArea*>(QStringLiteral("scrollArea"))->widget()->layout();
}

/// The date pages in the layout, top to bottom. Pages that were not placed are not among them.
inline QList<ZR_AiChatChatBoxPage*> pagesOf(const ZR_AiChatHistoricalChatBox& box) {
    QList<ZR_AiChatChatBoxPage*> pages;
    const QLayout* layout = pageLayoutOf(box);
    for (int i = 0; i < layout->count(); ++i) {
        if (auto* page = qobject_cast<ZR_AiChatChatBoxPage*>(layout->itemAt(i)->widget())) {
            pages.append(page);
        }
    }
    return pages;
}
