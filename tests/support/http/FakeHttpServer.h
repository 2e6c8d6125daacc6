#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <memory>

/// An HTTP server for tests, on a free loopback port and a thread of its own. It records requests byte for
/// byte. A request whose target has been given an answer gets it at once; every other one waits for the test
/// to answer it by hand, piece by piece. All members may be called from any thread.
class FakeHttpServer {
public:
    struct Request {
        /// Everything received, head and body.
        QByteArray raw;
        QByteArray method;
        QByteArray target;
        /// Names as sent, values without surrounding blanks.
        QList<QPair<QByteArray, QByteArray>> headers;
        QByteArray body;

        /// The value of the header, found without regard to case; null when it was not sent.
        QByteArray header(const QByteArray& name) const;
    };

    FakeHttpServer();
    ~FakeHttpServer();
    FakeHttpServer(const FakeHttpServer&) = delete;
    FakeHttpServer& operator=(const FakeHttpServer&) = delete;

    quint16 port() const;
    /// "127.0.0.1:" and the port, as the service address wants it.
    QString address() const;

    /// Every later request for the target gets this whole reply.
    void answer(const QByteArray& target, const QByteArray& body, int status = 200,
                const QByteArray& contentType = "application/json");

    /// Complete requests received so far, in the order in which they became complete.
    int requestCount() const;
    Request request(int index) const;
    /// Waits for a number of requests while delivering the calling thread's events.
    bool waitForRequests(int count, int timeoutMs = 20000) const;

    // Answering by hand; `index` counts as in request().
    /// Status line and headers, ended by an empty line. Without a length the reply lasts until close().
    void sendHead(int index, int status = 200, const QByteArray& contentType = "text/event-stream",
                  const QByteArray& moreHeaders = QByteArray());
    /// A whole reply without a body.
    void sendEmptyReply(int index, int status);
    void sendBytes(int index, const QByteArray& bytes);
    /// Closes once everything has been written.
    void close(int index);
    /// Drops the connection at once.
    void abort(int index);
    /// Whether the connection of the request is gone, whoever closed it.
    bool isClosed(int index) const;

private:
    class Worker;
    class Thread;
    std::unique_ptr<Thread> m_thread;
};
