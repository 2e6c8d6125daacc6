#include <gtest/gtest.h>

#include <QCursor>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "chat/ZR_AiChatService.h"
#include "tests/chat/FakeChat.h"
#include "tests/support/http/FakeHttpServer.h"

namespace {

/// Writes down where the pointer moves over it.
class PointedWindow : public QWindow {
public:
    QList<QPoint> points;

protected:
    void mouseMoveEvent(QMouseEvent* event) override { points.append(event->globalPos()); }
};

class WithheldInput : public ChatTest {
protected:
    WithheldInput() { setServiceAddress(m_server.address()); }

    FakeHttpServer m_server;
};

}  // namespace

TEST_F(WithheldInput, ReachesItsWindowOnceACallOnTheMainThreadHasReturned) {
    PointedWindow window;
    window.setGeometry(100, 100, 200, 200);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    // The offscreen platform queues the pointer's moves as every platform queues the user's input; keys that
    // a test types are delivered at once instead.
    const QPoint point(150, 150);
    bool moved = false;
    QTimer during;
    QObject::connect(&during, &QTimer::timeout, &window, [&] {
        if (m_server.requestCount() == 0) {
            return;
        }
        if (!moved) {
            moved = true;
            QCursor::setPos(point);
            return;
        }
        // The loop has gone round with the move waiting.
        during.stop();
        m_server.sendEmptyReply(0, 404);
    });
    during.start(1);
    EXPECT_TRUE(createSessionOnServer().IsEmpty());
    EXPECT_TRUE(moved);
    EXPECT_TRUE(window.points.isEmpty());

    // The host's loop delivers timers and posted events, but never asks Qt for the input that it holds back.
    QElapsedTimer limit;
    limit.start();
    while (window.points.isEmpty() && !limit.hasExpired(waitLimitMs)) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    EXPECT_EQ(window.points, QList<QPoint>{point});
}
