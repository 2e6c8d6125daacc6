#include "chat/ZR_AiChatCSThread.h"

#include <afxwin.h>

#include <QDebug>
#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>
#include <exception>

#include "chat/ZR_AiChatEventSplitter.h"
#include "chat/ZR_AiChatHttp.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatWorkerGuard.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriLogger.h"
#include "host/core/ZR_ZentriText.h"

namespace {

/// Only the end of a longer buffer is traced; tracing all of a large event again with every chunk would be
/// too slow.
constexpr int kTracedBufferSize = 4096;

QByteArray requestBody(const ZR_AiChatExchange& exchange) {
    QJsonObject body;
    body.insert(QLatin1String("userInput"), exchange.userInput);
    body.insert(QLatin1String("model"), QLatin1String("deepseek-chat"));
    body.insert(QLatin1String("userChatSessionId"), exchange.sessionId);
    return QJsonDocument(body).toJson();
}

QNetworkRequest streamRequest(const CString& token) {
    QNetworkRequest request(QUrl(zentriServiceUrl(QStringLiteral("/zr/ai/caddraw/chat"))));
    setZentriRequestHeaders(request, token);
    request.setRawHeader("Accept", "text/event-stream");
    request.setRawHeader("Cache-Control", "no-cache");
    return request;
}

void reportError(const QString& error) {
    zentriLog(_T("网络请求出错！错误信息为:") + toCString(error));
    qDebug() << "Connection error:" << error;
    AfxMessageBox(_T("Zentri 通信出错！"), MB_OK);
}

}  // namespace

ZR_AiChatCSThread::ZR_AiChatCSThread(QObject* parent) : QThread(parent) {}

ZR_AiChatCSThread::~ZR_AiChatCSThread() {
    quit();
    wait();
}

void ZR_AiChatCSThread::setExchange(const ZR_AiChatExchange& exchange) {
    m_exchange = exchange;
}

void ZR_AiChatCSThread::run() {
    runAndLogExceptions(_T("C/S通信线程发生错误:"), _T("C/S通信线程发生未知错误！"),
                        [this] { runExchange(); });
    // The manager clears the flag only when the queued streamEnd reaches it, so this may be a second
    // streamEnd. That is intended: it also ends an exchange that an exception has cut short.
    if (g_zentriCommunicating) {
        emit streamEnd();
    }
}

void ZR_AiChatCSThread::runExchange() {
    emit streamStart();

    const CString token = zentriRequestToken();
    if (token.IsEmpty()) {
        // The user has been signed out since the exchange was started.
        emit streamEnd();
        return;
    }
    QNetworkAccessManager network;
    const QNetworkRequest request = streamRequest(token);
    QNetworkReply* const reply = network.post(request, requestBody(m_exchange));

    QEventLoop loop;
    ZR_AiChatEventSplitter splitter;
    // An exception must not propagate through Qt's event delivery, so it is kept and rethrown after the loop.
    std::exception_ptr failure;

    const auto onReadyRead = [&] {
        try {
            splitter.append(reply->readAll());
            qDebug() << "CurrentBuffer:" << splitter.pendingTail(kTracedBufferSize);
            QString text;
            while (splitter.takeEvent(text)) {
                qDebug() << "Data Read:" << text;
                emit streamProcess(text);
            }
        } catch (...) {
            failure = std::current_exception();
            loop.exit();
        }
    };
    const auto onFinished = [&] {
        try {
            if (reply->error() != QNetworkReply::NoError) {
                reportError(reply->errorString());
            } else {
                qDebug() << "Connect finished!";
            }
            emit streamEnd();
        } catch (...) {
            failure = std::current_exception();
        }
        loop.exit();
    };
    // The loop is the context object: it lives on this thread, and its destruction disconnects the handlers
    // before the reply is deleted.
    QObject::connect(reply, &QNetworkReply::readyRead, &loop, onReadyRead, Qt::DirectConnection);
    QObject::connect(reply, &QNetworkReply::finished, &loop, onFinished, Qt::DirectConnection);
    loop.exec();

    // After quit() the reply may still be receiving. Suppress its remaining signals.
    QObject::disconnect(reply, nullptr, &loop, nullptr);
    qDebug() << "Loop end:" << reply->errorString();
    if (!reply->isFinished()) {
        reply->abort();
    }
    reply->deleteLater();
    if (failure) {
        std::rethrow_exception(failure);
    }
}
