#pragma once

#include <QRect>
#include <QString>

#include "chat/ZR_AiChatSingleChatRecord.h"

/// What the chat manager and the small widgets need of the main chat view; reached through the chat-view
/// accessor. UI thread.
class ZR_AiChatViewInterface {
public:
    virtual ~ZR_AiChatViewInterface() = default;

    // Called by the chat manager.
    virtual void onStreamStart() = 0;
    virtual void onStreamProcess() = 0;
    virtual void onStreamEnd() = 0;
    /// Shows the manager's current record and marks it in the side bar.
    virtual void showCurrentSession() = 0;
    /// Hands the session list to the side bar.
    virtual void updateSideBarSessions(const ZR_AiChatSessionList& sessions) = 0;

    // Called when an icon of a bubble is clicked.
    /// Sets the text of the input box and clears its focus.
    virtual void setInputText(const QString& text) = 0;
    /// Sends the text of the input box.
    virtual void sendInput() = 0;

    /// The view's geometry in its parent; the side bar positions its menus with it.
    virtual QRect viewGeometry() const = 0;
};
