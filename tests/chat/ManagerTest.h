#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include "tests/chat/FakeChat.h"
#include "tests/chat/ServiceReplies.h"
#include "tests/support/http/FakeHttpServer.h"

// Messages that the manager prints.
extern const QString kNotSignedIn;
extern const QString kNoThreads;
extern const QString kBusy;
extern const QString kInitialising;
extern const QString kNoChatThread;
extern const QString kNotCreated;
extern const QString kOpenRefused;
extern const QString kReadBegins;
extern const QString kReadDone;
extern const QString kNetworkFailure;

/// A manager of the test's own, and a service whose replies the test sets.
class ManagerTest : public ChatTest {
protected:
    ManagerTest();

    /// Lets the service create sessions with this id.
    void answerCreate(const QByteArray& id) { ::answerCreate(m_server, id); }
    /// Lets the service list these sessions, each with one question.
    void answerHistory(const QList<QByteArray>& ids);
    /// Reads a history and discards what that has printed and called.
    void loadHistory(const QList<QByteArray>& ids);

    QStringList sessionIds() const;
    /// The messages of the current record.
    QStringList current() const;
    QString currentId() const;
    /// The messages of a listed session.
    QStringList listed(const CString& id) const;

    int requestsTo(const QByteArray& target) const;

    FakeHttpServer m_server;
};
