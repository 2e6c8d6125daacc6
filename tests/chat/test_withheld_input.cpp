#include <gtest/gtest.h>

#include <QCursor>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTest>
#include <QWindow>

#include "tests/chat/WithheldCall.h"

namespace {

/// Records where the pointer moves over it.
class PointedWindow : public QWindow {
public:
    QList<QPoint> points;

protected:
    void mouseMoveEvent(QMouseEvent* event) override { points.append(event->globalPos()); }
};

using WithheldInput = WithheldCall;

}  // namespace

TEST_F(WithheldInput, ReachesItsWindowOnceTheCallHasReturned) {
    PointedWindow window;
    window.setGeometry(100, 100, 200, 200);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    // The offscreen platform queues mouse moves as every platform queues user input; keys that a test types
    // would be delivered at once.
    const QPoint point(150, 150);
    callMeanwhile([&] { QCursor::setPos(point); });
    EXPECT_TRUE(window.points.isEmpty());

    // The host's loop delivers timers and posted events, but never asks Qt for the input that it has queued.
    QElapsedTimer limit;
    limit.start();
    while (window.points.isEmpty() && !limit.hasExpired(kWaitLimitMs)) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    EXPECT_EQ(window.points, QList<QPoint>{point});
}
