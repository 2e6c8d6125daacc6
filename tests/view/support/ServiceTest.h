#pragma once

#include "tests/support/http/FakeHttpServer.h"
#include "tests/view/support/ViewTest.h"

/// A ViewTest with a fake service that the test controls.
class ServiceTest : public ViewTest {
protected:
    ServiceTest();
    ~ServiceTest() override;

    /// A session stored on the service. The messages are question and answer in turn, all at `time`.
    struct Stored {
        QString id;
        QStringList messages;
        qint64 time;
    };

    /// Sets the session id that create calls are answered with.
    void answerCreate(const QString& id);
    /// Sets the event stream that every question is answered with.
    void answerChat(const QByteArray& events);
    /// Has the manager read these sessions and waits until it has finished.
    void loadHistory(const QList<Stored>& sessions);
    /// Waits until both threads have finished. False if they do not in time.
    bool waitUntilIdle();

    FakeHttpServer m_server;
};

/// Request target of the streaming chat call.
extern const QByteArray kChatTarget;
