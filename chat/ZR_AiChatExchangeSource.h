#pragma once

#include <QString>

/// What one exchange sends.
struct ZR_AiChatExchange {
    QString userInput;
    QString sessionId;
};

/// Tells the streaming thread what to send. The manager implements it and announces itself in
/// ZR_AiChatModuleState.h, so that the thread need not know the manager.
class ZR_AiChatExchangeSource {
public:
    virtual ~ZR_AiChatExchangeSource() = default;

    /// The newest question and the session id of the current record. Called on the streaming thread.
    virtual ZR_AiChatExchange currentExchange() const = 0;
};
