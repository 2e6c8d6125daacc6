#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <memory>

/// An HTTP server for tests, on a free loopback port and its own thread. It records requests byte for byte. A
/// request whose target has a prepared reply is answered at once; any other stays open for the test to reply
/// to step by step. All members may be called from any thread.
class FakeHttpServer {
public:
    struct Request {
        /// The request as received, head and body.
        QByteArray raw;
        QByteArray method;
        QByteArray target;
        /// Names as sent, values trimmed.
        QList<QPair<QByteArray, QByteArray>> headers;
        QByteArray body;

        /// The value of the header, matching its name without case; a null QByteArray if it was not sent.
        QByteArray header(const QByteArray& name) const;
    };

    FakeHttpServer();
    ~FakeHttpServer();
    FakeHttpServer(const FakeHttpServer&) = delete;
    FakeHttpServer& operator=(const FakeHttpServer&) = delete;

    quint16 port() const;
    /// "127.0.0.1:" and the port, in the form of a service address.
    QString address() const;

    /// Prepares this complete reply for every later request for the target.
    void answer(const QByteArray& target, const QByteArray& body, int status = 200,
                const QByteArray& contentType = "application/json");

    /// The complete requests received so far, in order of completion.
    int requestCount() const;
    Request request(int index) const;
    /// Processes the calling thread's events until `count` requests have been received; false on a timeout.
    bool waitForRequests(int count, int timeoutMs = 20000) const;

    // Replying step by step; `index` is that of request().
    /// Sends status line and headers, ended by an empty line. Without a Content-Length among them the body
    /// ends with close().
    void sendHead(int index, int status = 200, const QByteArray& contentType = "text/event-stream",
                  const QByteArray& moreHeaders = QByteArray());
    /// Sends a complete reply without a body.
    void sendEmptyReply(int index, int status);
    void sendBytes(int index, const QByteArray& bytes);
    /// Closes the connection once everything has been written.
    void close(int index);
    /// Closes the connection at once, discarding unsent bytes.
    void abort(int index);
    /// Whether the connection of the request has been closed, by either side.
    bool isClosed(int index) const;

private:
    class Worker;
    class Thread;
    std::unique_ptr<Thread> m_thread;
};
