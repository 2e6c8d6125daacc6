#pragma once

#include "tests/support/http/FakeHttpServer.h"
#include "tests/view/support/ViewTest.h"

/// A ViewTest whose service is a server under the test's command.
class ServiceTest : public ViewTest {
protected:
    ServiceTest();
    ~ServiceTest() override;

    /// A stored session: its id, the messages in turn question and answer, and the time of all of them.
    struct Stored {
        QString id;
        QStringList messages;
        qint64 time;
    };

    /// The id of the session that the next create call makes.
    void answerCreate(const QString& id);
    /// Every question gets this answer.
    void answerChat(const QByteArray& events);
    /// Lets the manager read these sessions and waits until it has them.
    void loadHistory(const QList<Stored>& sessions);
    /// Waits until no exchange is under way.
    bool waitUntilIdle();

    FakeHttpServer m_server;
};

extern const QByteArray kChatTarget;
