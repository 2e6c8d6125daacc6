#pragma once

#include <afx.h>

#include <QObject>
#include <QPointer>
#include <QString>
#include <cstdint>

#include "chat/ZR_AiChatSessionStore.h"
#include "chat/ZR_AiChatSingleChatRecord.h"

class QThread;
class ZR_AiChatAnswerInterface;

/// Holds the user's sessions and the current conversation, and decides whether an exchange may start.
/// Refusals are printed on the host's command line. UI thread, but for what the streaming thread asks as its
/// exchange source.
class ZR_AiChatManager : public QObject {
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

    /// Connects the threads first: after the module has been unloaded and loaded again in one process they
    /// are other objects.
    void startThread(QThread* thread);
    /// Makes the connections that do not exist yet.
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
    void addToCurrent(std::uint32_t role, const CString& text);
    /// Copies the listed session into the current record; false when it is not listed.
    bool makeCurrent(const CString& sessionId);

    ZR_AiChatSessionStore m_sessions;
    ZR_AiChatSingleChatRecord m_current;
    Answer m_answer;
    bool m_sendFlag = false;
    bool m_initialising = false;

    /// True while a session is being created: the wait delivers events, and what they start must not change
    /// the current record.
    bool m_creatingSession = false;
    /// False when the manager was created before the threads: it then never reacts to them.
    const bool m_createdAfterThreads;
};
