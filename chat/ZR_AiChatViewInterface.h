#pragma once

#include <QRect>
#include <QString>

#include "chat/ZR_AiChatSingleChatRecord.h"

/// What the chat manager and the small widgets need of the main chat view; reached through the chat-view
/// accessor. UI thread.
class ZR_AiChatViewInterface {
public:
    virtual ~ZR_AiChatViewInterface() = default;

    // Driven by the chat manager.
    virtual void onStreamStart() = 0;
    virtual void onStreamProcess() = 0;
    virtual void onStreamEnd() = 0;
    /// Shows the manager's current record and marks it in the side bar.
    virtual void showCurrentSession() = 0;
    /// Hands the session list to the side bar.
    virtual void updateSideBarSessions(const ZR_AiChatSessionList& sessions) = 0;

    // Driven by a bubble's icons.
    /// Puts text into the input box and takes the focus off it.
    virtual void setInputText(const QString& text) = 0;
    /// Runs the send flow on what the input box holds.
    virtual void sendInput() = 0;

    /// The view's place in its parent; menus of the side bar are placed by it.
    virtual QRect viewGeometry() const = 0;
};
