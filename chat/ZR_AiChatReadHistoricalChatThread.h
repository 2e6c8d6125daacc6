#pragma once

#include <QThread>
#include <mutex>

#include "chat/ZR_AiChatSingleChatRecord.h"

/// Reads all of the user's sessions from the service, one after another. Only quit() cancels a run: the
/// remaining reads then fail at once.
class ZR_AiChatReadHistoricalChatThread : public QThread {
    Q_OBJECT

public:
    explicit ZR_AiChatReadHistoricalChatThread(QObject* parent = nullptr);
    /// Stops a running read and waits for it.
    ~ZR_AiChatReadHistoricalChatThread() override;

    /// Replaces the content of `sessions` with the sessions read, in the service's order; false when there
    /// are none, `sessions` is then unchanged. Meant to be called after readEnd; during a run it returns the
    /// sessions read so far.
    bool copyResultTo(ZR_AiChatSessionList& sessions) const;

    /// Whether the result is that of the user with this token. A run that ends late may have read the
    /// sessions of a user who has signed out.
    bool isResultOf(const CString& token) const;

signals:
    void readStart();
    /// Follows every readStart, even if nothing could be read.
    void readEnd();

protected:
    void run() override;

private:
    void readSessions();
    template <typename Change>
    void changeResult(const Change& change) {
        const std::lock_guard<std::mutex> lock(m_resultMutex);
        change();
    }

    /// Guards the result: a second run may have started by the time the first one's readEnd is handled.
    mutable std::mutex m_resultMutex;
    ZR_AiChatSessionList m_result;
    /// The token with which the result was read.
    CString m_resultToken;
};
