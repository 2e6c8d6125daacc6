#include "chat/ZR_AiChatHttp.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include "host/core/ZR_ZentriQuitGuard.h"
#include "host/core/ZR_ZentriServiceAddress.h"
#include "host/core/ZR_ZentriText.h"

namespace {

bool onMainThread() {
    const QCoreApplication* application = QCoreApplication::instance();
    return application != nullptr && application->thread() == QThread::currentThread();
}

/// Blocks until the reply has finished or the thread is asked to quit.
void waitFor(const QNetworkReply* reply) {
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (!onMainThread()) {
        loop.exec();
        return;
    }
    // User input is excluded, because the user must not start anything while the caller is half-way through.
    // Qt queues that input, on some platforms until one of its event loops runs again, which may never happen
    // inside the host. So it is delivered as soon as the host's own loop runs again.
    const ZR_ZentriQuitGuard quit;
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    QTimer::singleShot(0, QCoreApplication::instance(), [] {
        const ZR_ZentriQuitGuard quitMeanwhile;
        // Qt's Windows dispatcher is still interrupted; the first call only clears that.
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    });
}

}  // namespace

QString zentriServiceUrl(const QString& path) {
    return QStringLiteral("http://") + zentriServiceAddress() + path;
}

void setZentriRequestHeaders(QNetworkRequest& request, const CString& token) {
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    request.setRawHeader("Authorization", toQString(token).toUtf8());
}

bool postToZentriService(const QString& path, int port, const CString& token, QString& body) {
    Q_UNUSED(port)
    QNetworkAccessManager network;
    QNetworkRequest request(QUrl(zentriServiceUrl(path)));
    setZentriRequestHeaders(request, token);
    // Owned by the access manager, which ends a reply that has not finished.
    QNetworkReply* const reply = network.post(request, QByteArrayLiteral("{}"));
    if (!reply->isFinished()) {
        waitFor(reply);
    }
    if (!reply->isFinished() || reply->error() != QNetworkReply::NoError) {
        return false;
    }
    const QByteArray bytes = reply->readAll();
    body = QString::fromUtf8(bytes.constData(), bytes.size());
    return true;
}
