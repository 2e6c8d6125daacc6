#pragma once

#include <afx.h>

#include <QObject>
#include <QPointer>
#include <QString>
#include <QThread>
#include <cstdint>

#include "chat/ZR_AiChatSessionStore.h"
#include "chat/ZR_AiChatSingleChatRecord.h"

class ZR_AiChatAnswerInterface;

/// Holds the user's sessions and the current conversation, and decides whether an exchange may start.
/// Refusals are printed on the host's command line. UI thread.
///
/// The signals of the two threads are queued here. In a foreign message loop they wait while there is user
/// input, so a click can overtake them. Every operation that depends on a thread or changes the current
/// conversation therefore delivers first what the threads have posted.
class ZR_AiChatManager : public QObject {
    Q_OBJECT

public:
    /// The one manager, created on first use; the module's thread objects must exist by then.
    static ZR_AiChatManager& instance();

    /// The one manager, or null if it has not been created yet.
    static ZR_AiChatManager* existingInstance();

    /// Whether an exchange may start now; prints the reason if not.
    bool canCommunicate();

    /// Starts reading the user's sessions if the user is signed in. While another operation runs, it prints
    /// the reason and starts as soon as that operation has ended. False when nobody is signed in or there are
    /// no threads: nothing will then be read.
    bool initUserData();

    /// Forgets the user's sessions and the current conversation. The module calls it when it is unloaded,
    /// after it has stopped the streaming thread: the next user must not be given them.
    void forgetUser();

    /// Sends a question in the current conversation, which is created on the service when it is new. The
    /// answer streams into `bubble`, which may be deleted at any time. `flag` is stored and not used.
    void send(const CString& question, bool flag, ZR_AiChatAnswerInterface* bubble);

    /// Files the current conversation and starts an empty one. The caller must have checked canCommunicate().
    void newSession();

    /// Makes a listed session current and shows it.
    void openSession(const CString& sessionId);

    void getCurrentRecord(ZR_AiChatSingleChatRecord& record) const;
    /// The newest question of the current conversation, empty when there is none.
    CString getLastUserInput() const;

    /// Replaces the content of `sessions` with copies of all sessions; always true.
    bool getSessions(ZR_AiChatSessionList& sessions) const;
    /// Copies the first listed session with this id; false when there is none, `record` is then unchanged.
    bool findSession(const CString& sessionId, ZR_AiChatSingleChatRecord& record) const;
    /// Replaces the content of `sessions` with the listed sessions that have a message containing the text;
    /// false when there are none. Part of the interface; nothing in the module calls it.
    bool searchSessions(const CString& text, ZR_AiChatSessionList& sessions) const;

    /// Tests with a real connection whether the network is reachable; blocks.
    bool checkConnection();

    /// A new GUID in upper case without braces; empty when the system cannot create one. Part of the
    /// interface; nothing in the module calls it.
    static CString makeGuid();

signals:
    /// A question was added to an existing session.
    void sessionUpdated(CString updatedSession);
    /// A new session was added to the list.
    void newSessionSet(CString newSession);
    // Part of the interface; nothing in the module emits these: see ZR_AiChatCSThread for the real ones.
    void streamStart();
    void streamProcess(QString processStr);
    void streamEnd();
    void historicalChatReadStart();
    void historicalChatReadEnd();

public slots:
    void onStreamStart();
    void onStreamProcess(const QString& text);
    /// Stores the bubble's text as the answer. When the stream ends twice, this runs twice and stores the
    /// answer twice; that is intended.
    void onStreamEnd();
    void onReadStart();
    void onReadEnd();

protected:
    ZR_AiChatManager();
    ~ZR_AiChatManager() override;

    /// Sends a question in the session with this id, after making it current. If the session is not listed,
    /// nothing is sent and nothing is printed.
    void sendInKnownSession(const CString& sessionId, const CString& question, bool flag,
                            ZR_AiChatAnswerInterface* bubble);

private:
    /// The answer bubble, guarded against its deletion.
    struct Answer {
        Answer() = default;
        explicit Answer(ZR_AiChatAnswerInterface* bubble);
        /// The bubble, or null once it has been deleted.
        ZR_AiChatAnswerInterface* get() const;

        ZR_AiChatAnswerInterface* bubble = nullptr;
        QPointer<QObject> object;
    };

    /// Which of the two threads run.
    struct Running {
        bool chat = false;
        bool history = false;
    };

    /// Delivers what the threads have posted to the manager, and says which of them were still running
    /// before. Of a thread that was not, every signal has been handled. Also within a slot: the view, called
    /// by one, may change the current conversation while more signals are queued.
    Running deliverPosted();

    /// Connects the threads first: after the module has been unloaded and loaded again in one process they
    /// are other objects.
    void startThread(QThread* thread);
    /// Makes the connections that do not exist yet.
    void connectThreads();
    void onThreadFinished();

    /// Why no exchange may start now, as printed; empty if one may.
    CString refusal();
    bool isExchanging(const Running& running) const;
    void readUserData();
    /// Starts the reading that initUserData() had to put off.
    void readUserDataIfPending();

    void sendInNewSession(const CString& question, bool flag, const Answer& answer);
    /// Checks whether an exchange may start; prints the reason if not.
    bool mayStartExchange(const Running& running);
    void startExchange(const CString& question, bool flag, const Answer& answer);

    /// Stores the current record in the list, unless it has no session id, and clears it.
    void fileCurrent();
    void addToCurrent(std::uint32_t role, const CString& text);
    /// Copies the listed session into the current record; false when it is not listed.
    bool makeCurrent(const CString& sessionId);

    ZR_AiChatSessionStore m_sessions;
    ZR_AiChatSingleChatRecord m_current;
    Answer m_answer;
    /// Part of the interface; nothing in the module reads it.
    bool m_sendFlag = false;
    bool m_initialising = false;

    /// True from the creation of a session, a blocking call that delivers events, until the exchange has been
    /// started: the handlers of events and signals must not change the current record meanwhile.
    bool m_sending = false;
    /// True while initUserData() waits for another operation to end.
    bool m_readPending = false;
    /// True while the view reads the list of sessions, which no signal may replace then.
    bool m_listInUse = false;
    /// Incremented by forgetUser().
    int m_userNumber = 0;
    /// The streaming thread whose signals are connected.
    QPointer<QThread> m_chatThread;
    /// False when the manager was created before the threads: it then never reacts to them.
    const bool m_createdAfterThreads;
};
