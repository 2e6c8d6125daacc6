#include "tests/support/http/FakeHttpServer.h"

#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QThread>
#include <QWaitCondition>
#include <utility>

namespace {

constexpr char kEndOfHead[] = "\r\n\r\n";
constexpr char kLineEnd[] = "\r\n";

FakeHttpServer::Request parseHead(const QByteArray& head) {
    FakeHttpServer::Request request;
    int lineStart = 0;
    while (lineStart < head.size()) {
        int end = head.indexOf(kLineEnd, lineStart);
        end = end < 0 ? head.size() : end;
        const QByteArray line = head.mid(lineStart, end - lineStart);
        if (lineStart == 0) {
            const QList<QByteArray> words = line.split(' ');
            request.method = words.value(0);
            request.target = words.value(1);
        } else {
            const int colon = line.indexOf(':');
            request.headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
        }
        lineStart = end + 2;
    }
    return request;
}

QByteArray replyHead(int status, const QByteArray& contentType, const QByteArray& moreHeaders) {
    return "HTTP/1.1 " + QByteArray::number(status) + " Status" + kLineEnd + "Content-Type: " + contentType +
           kLineEnd + moreHeaders + kLineEnd;
}

}  // namespace

QByteArray FakeHttpServer::Request::header(const QByteArray& name) const {
    for (const auto& header : headers) {
        if (header.first.compare(name, Qt::CaseInsensitive) == 0) {
            return header.second;
        }
    }
    return QByteArray();
}

/// The sockets and the requests received on them. Lives on the server's thread; the mutex guards what the
/// test reads from other threads.
class FakeHttpServer::Worker : public QObject {
public:
    Worker() {
        connect(&m_server, &QTcpServer::newConnection, this, &Worker::accept);
        if (!m_server.listen(QHostAddress::LocalHost, 0)) {
            qFatal("The test's HTTP server cannot listen: %s", qPrintable(m_server.errorString()));
        }
    }

    quint16 port() const { return m_server.serverPort(); }

    void answer(const QByteArray& target, const QByteArray& reply) { m_answers.insert(target, reply); }

    int requestCount() const {
        const QMutexLocker locker(&m_mutex);
        return m_requests.size();
    }

    Request request(int index) const {
        const QMutexLocker locker(&m_mutex);
        return m_requests.value(index);
    }

    void send(int index, const QByteArray& bytes) {
        if (QTcpSocket* socket = m_sockets.value(index)) {
            socket->write(bytes);
            socket->flush();
        }
    }

    void close(int index) {
        if (QTcpSocket* socket = m_sockets.value(index)) {
            socket->disconnectFromHost();
        }
    }

    void abort(int index) {
        if (QTcpSocket* socket = m_sockets.value(index)) {
            socket->abort();
        }
    }

    bool isClosed(int index) const {
        const QTcpSocket* socket = m_sockets.value(index);
        return socket == nullptr || socket->state() == QAbstractSocket::UnconnectedState;
    }

private:
    void accept() {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
            connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
                m_received.remove(socket);
                socket->deleteLater();
            });
        }
    }

    void read(QTcpSocket* socket) {
        QByteArray& received = m_received[socket];
        received += socket->readAll();
        for (int headSize = received.indexOf(kEndOfHead); headSize >= 0;
             headSize = received.indexOf(kEndOfHead)) {
            Request request = parseHead(received.left(headSize));
            const int bodyStart = headSize + 4;
            const int bodySize = request.header("Content-Length").toInt();
            if (received.size() < bodyStart + bodySize) {
                return;
            }
            request.raw = received.left(bodyStart + bodySize);
            request.body = request.raw.mid(bodyStart);
            received.remove(0, bodyStart + bodySize);
            add(request, socket);
        }
    }

    void add(const Request& request, QTcpSocket* socket) {
        m_sockets.append(socket);
        const auto reply = m_answers.constFind(request.target);
        if (reply != m_answers.constEnd()) {
            socket->write(*reply);
        }
        const QMutexLocker locker(&m_mutex);
        m_requests.append(request);
    }

    QHash<QByteArray, QByteArray> m_answers;
    QHash<QTcpSocket*, QByteArray> m_received;
    QList<QPointer<QTcpSocket>> m_sockets;

    mutable QMutex m_mutex;
    QList<Request> m_requests;

    // Last, so that it is destroyed first: its sockets then emit disconnected(), whose slot uses m_received.
    QTcpServer m_server;
};

class FakeHttpServer::Thread : public QThread {
public:
    Thread() {
        start();
        m_ready.lock();
        while (m_worker == nullptr) {
            m_started.wait(&m_ready);
        }
        m_ready.unlock();
    }

    ~Thread() override {
        quit();
        wait();
    }

    const Worker& worker() const { return *m_worker; }

    /// Runs the function on the server's thread and blocks until it returns.
    template <typename Function>
    void call(Function function) {
        Worker* const worker = m_worker;
        QMetaObject::invokeMethod(
            worker, [worker, &function] { function(*worker); }, Qt::BlockingQueuedConnection);
    }

protected:
    void run() override {
        Worker worker;
        m_ready.lock();
        m_worker = &worker;
        m_started.wakeAll();
        m_ready.unlock();
        exec();
    }

private:
    QMutex m_ready;
    QWaitCondition m_started;
    Worker* m_worker = nullptr;
};

FakeHttpServer::FakeHttpServer() : m_thread(std::make_unique<Thread>()) {}

FakeHttpServer::~FakeHttpServer() = default;

quint16 FakeHttpServer::port() const {
    quint16 result = 0;
    m_thread->call([&](const Worker& worker) { result = worker.port(); });
    return result;
}

QString FakeHttpServer::address() const {
    return QStringLiteral("127.0.0.1:%1").arg(port());
}

void FakeHttpServer::answer(const QByteArray& target, const QByteArray& body, int status,
                            const QByteArray& contentType) {
    const QByteArray length = "Content-Length: " + QByteArray::number(body.size()) + kLineEnd;
    const QByteArray reply = replyHead(status, contentType, length) + body;
    m_thread->call([&](Worker& worker) { worker.answer(target, reply); });
}

int FakeHttpServer::requestCount() const {
    return m_thread->worker().requestCount();
}

FakeHttpServer::Request FakeHttpServer::request(int index) const {
    return m_thread->worker().request(index);
}

bool FakeHttpServer::waitForRequests(int count, int timeoutMs) const {
    return QTest::qWaitFor([this, count] { return requestCount() >= count; }, timeoutMs);
}

void FakeHttpServer::sendHead(int index, int status, const QByteArray& contentType,
                              const QByteArray& moreHeaders) {
    sendBytes(index, replyHead(status, contentType, moreHeaders));
}

void FakeHttpServer::sendEmptyReply(int index, int status) {
    sendHead(index, status, "text/plain", "Content-Length: 0\r\n");
}

void FakeHttpServer::sendBytes(int index, const QByteArray& bytes) {
    m_thread->call([&](Worker& worker) { worker.send(index, bytes); });
}

void FakeHttpServer::close(int index) {
    m_thread->call([&](Worker& worker) { worker.close(index); });
}

void FakeHttpServer::abort(int index) {
    m_thread->call([&](Worker& worker) { worker.abort(index); });
}

bool FakeHttpServer::isClosed(int index) const {
    bool result = false;
    m_thread->call([&](const Worker& worker) { result = worker.isClosed(index); });
    return result;
}
