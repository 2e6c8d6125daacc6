#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include "tests/chat/FakeChat.h"
#include "tests/support/http/FakeHttpServer.h"

// What the manager asks the service for.
extern const QByteArray chatTarget;
extern const QByteArray createTarget;
extern const QByteArray listTarget;
extern const QByteArray readTarget;

// What the manager prints.
extern const QString notSignedIn;
extern const QString noThreads;
extern const QString busy;
extern const QString initialising;
extern const QString noChatThread;
extern const QString notCreated;
extern const QString openRefused;
extern const QString readBegins;
extern const QString readDone;
extern const QString networkFailure;

/// A manager of the test's own, and a service whose replies the test gives.
class ManagerTest : public ChatTest {
protected:
    ManagerTest();

    /// Lets the service create sessions with this id.
    void answerCreate(const QByteArray& id);
    /// Lets the service tell of sessions with one question each.
    void answerHistory(const QList<QByteArray>& ids);
    /// Reads a history in, and forgets what that printed and called.
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
