#pragma once

#include <QString>

class QObject;

/// What the chat manager needs of an answer bubble while an answer streams in. UI thread.
class ZR_AiChatAnswerInterface {
public:
    virtual ~ZR_AiChatAnswerInterface() = default;

    /// The answer starts: the bubble clears its text and shows that it is waiting.
    virtual void startAnswerLoading() = 0;
    /// Appends one streamed piece.
    virtual void appendAnswerText(const QString& piece) = 0;
    /// The answer is complete.
    virtual void stopAnswerLoading() = 0;
    /// The whole answer text so far.
    virtual QString answerText() const = 0;

    /// The bubble as a QObject, so that its deletion can be tracked.
    virtual QObject* answerObject() = 0;
};
