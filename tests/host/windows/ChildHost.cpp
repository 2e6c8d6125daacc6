#include "tests/host/windows/ChildHost.h"

#include <QElapsedTimer>

#include "tests/host/EmptyService.h"

namespace {
constexpr int kSliceMilliseconds = 20;
constexpr int kTimeoutMilliseconds = 50000;
}  // namespace

ChildHost::ChildHost() {
    serveEmptyHistory(service);
    child.setProcessChannelMode(QProcess::SeparateChannels);
}

ChildHost::~ChildHost() {
    if (child.state() != QProcess::NotRunning) {
        child.kill();
        child.waitForFinished();
    }
}

void ChildHost::start(const QString& program, const QStringList& arguments) {
    child.start(program, arguments);
    ASSERT_TRUE(child.waitForStarted()) << qPrintable(child.errorString());
}

QString ChildHost::readLine() {
    QElapsedTimer clock;
    clock.start();
    while (!child.canReadLine() && clock.elapsed() < kTimeoutMilliseconds) {
        if (!child.waitForReadyRead(kSliceMilliseconds) && child.state() == QProcess::NotRunning) {
            break;
        }
    }
    return QString::fromUtf8(child.readLine()).trimmed();
}

testing::AssertionResult ChildHost::endsWell(int timeoutMs) {
    if (child.state() != QProcess::NotRunning && !child.waitForFinished(timeoutMs)) {
        return testing::AssertionFailure() << "it still runs after " << timeoutMs << " ms";
    }
    const QByteArray errors = child.readAllStandardError();
    if (child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0 || !errors.isEmpty()) {
        return testing::AssertionFailure()
               << "exit code " << child.exitCode() << ", stderr: " << errors.constData();
    }
    return testing::AssertionSuccess();
}

int ChildHost::waitForQuestion() {
    int known = 0;
    while (service.waitForRequests(known + 1)) {
        if (service.request(known).target == kChatTarget) {
            return known;
        }
        ++known;
    }
    return -1;
}
