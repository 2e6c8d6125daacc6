#pragma once

#include <QThread>

#include "chat/ZR_AiChatSingleChatRecord.h"

/// Reads all of the user's sessions from the service, one after another. Nothing cancels a run but quit(),
/// which lets the remaining reads fail at once.
class ZR_AiChatReadHistoricalChatThread : public QThread {
    Q_OBJECT

public:
    explicit ZR_AiChatReadHistoricalChatThread(QObject* parent = nullptr);
    /// Stops a running read and waits for it.
    ~ZR_AiChatReadHistoricalChatThread() override;

    /// Replaces the content of `sessions` by the sessions read, in the service's order; false, with
    /// `sessions` left alone, when there are none. To be called after readEnd, not during a run.
    bool copyResultTo(ZR_AiChatSessionList& sessions) const;

signals:
    void readStart();
    /// Follows every readStart, also when nothing could be read.
    void readEnd();

protected:
    void run() override;

private:
    void readSessions();

    ZR_AiChatSessionList m_result;
};
