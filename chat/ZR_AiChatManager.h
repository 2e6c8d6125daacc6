#pragma once

#include <afx.h>

#include <QObject>
#include <QPointer>
#include <QString>
#include <cstdint>
#include <mutex>

#include "chat/ZR_AiChatExchangeSource.h"
#include "chat/ZR_AiChatSessionStore.h"
#include "chat/ZR_AiChatSingleChatRecord.h"

class ZR_AiChatAnswerInterface;

/// Holds the user's sessions and the current conversation, and decides whether an exchange may start.
/// Refusals are printed on the host's command line. UI thread, but for what the streaming thread asks as its
/// exchange source.
class ZR_AiChatManager : public QObject, private ZR_AiChatExchangeSource {
    Q_OBJECT

public:
    /// The one manager, made on first use; the module's thread objects must exist by then.
    static ZR_AiChatManager& instance();

    /// Whether an exchange may start now; prints the reason when not.
    bool canCommunicate();

    /// Starts reading the user's sessions, once the user is signed in.
    void initUserData();

    /// Sends a question in the current conversation, which is created on the service when it is new. The
    /// answer streams into `bubble`, which may be deleted at any time. `flag` is only kept.
    void send(const CString& question, bool flag, ZR_AiChatAnswerInterface* bubble);

    /// Files the current conversation and begins an empty one. The caller has asked canCommunicate().
    void newSession();

    /// Makes a listed session current and shows it.
    void openSession(const CString& sessionId);

    void getCurrentRecord(ZR_AiChatSingleChatRecord& record) const;
    /// The newest question of the current conversation, empty when there is none.
    CString getLastUserInput() const;

    /// Replaces the content of `sessions` by copies of all sessions; always true.
    bool getSessions(ZR_AiChatSessionList& sessions) const;
    /// Copies the first listed session with this id; false, with `record` left alone, when there is none.
    bool findSession(const CString& sessionId, ZR_AiChatSingleChatRecord& record) const;
    /// Replaces the content of `sessions` by the listed sessions with a message that contains the text; false
    /// when there are none.
    bool searchSessions(const CString& text, ZR_AiChatSessionList& sessions) const;

    /// Tests with a real connection whether the network can be reached; blocks.
    bool checkConnection();

    /// A new GUID in upper case without braces; empty when the system cannot make one.
    static CString makeGuid();

signals:
    /// A question was added to a session that existed.
    void sessionUpdated(CString updatedSession);
    /// A new session was added to the list.
    void newSessionSet(CString newSession);
    // Never emitted: the manager drives the view directly. They belong to the interface all the same.
    void streamStart();
    void streamProcess(QString processStr);
    void streamEnd();
    void historicalChatReadStart();
    void historicalChatReadEnd();

public slots:
    void onStreamStart();
    void onStreamProcess(const QString& text);
    /// Stores the bubble's text as the answer. Runs a second time when the stream ends twice, and then stores
    /// it a second time: that is meant.
    void onStreamEnd();
    void onReadStart();
    void onReadEnd();

protected:
    ZR_AiChatManager();
    ~ZR_AiChatManager() override;

    /// Sends a question in the session with this id, which is made current first. When it is not listed
    /// nothing is sent and nothing is said.
    void sendInKnownSession(const CString& sessionId, const CString& question, bool flag,
                            ZR_AiChatAnswerInterface* bubble);

private:
    /// The answer bubble and what tells that it is gone.
    struct Answer {
        Answer() = default;
        explicit Answer(ZR_AiChatAnswerInterface* bubble);
        /// The bubble, or null once it has been deleted.
        ZR_AiChatAnswerInterface* get() const;

        ZR_AiChatAnswerInterface* bubble = nullptr;
        QPointer<QObject> object;
    };

    ZR_AiChatExchange currentExchange() const override;

    /// Connects the signals of the threads that are not connected yet: after the module was unloaded and
    /// loaded again in one process these are other objects.
    void connectThreads();
    void onThreadFinished();

    bool isStreaming() const;
    bool isExchanging() const;

    void sendInNewSession(const CString& question, bool flag, ZR_AiChatAnswerInterface* bubble);
    CString createSession();
    /// Tests that nothing stands in the way of an exchange; prints the reason when not.
    bool mayStartExchange();
    void startExchange(const CString& question, bool flag, const Answer& answer);

    /// Puts the current record into the list, unless it has no session id, and clears it.
    void fileCurrent();
    template <typename Change>
    void changeCurrent(const Change& change) {
        const std::lock_guard<std::mutex> lock(m_currentMutex);
        change();
    }
    void addToCurrent(std::uint32_t role, const CString& text);
    /// Copies the listed session into the current record; false when it is not listed.
    bool makeCurrent(const CString& sessionId);

    ZR_AiChatSessionStore m_sessions;
    ZR_AiChatSingleChatRecord m_current;
    Answer m_answer;
    bool m_sendFlag = false;
    bool m_initialising = false;

    /// Guards m_current: the streaming thread reads it while a late second streamEnd may still add an answer.
    mutable std::mutex m_currentMutex;
    /// True while a session is being created: the wait delivers events, and what they start must not change
    /// the current record.
    bool m_creatingSession = false;
    /// Whether the threads existed when the manager was made. When not, it never reacts to them.
    bool m_connected = false;
};
