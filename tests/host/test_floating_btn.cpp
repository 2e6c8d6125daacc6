#include <gtest/gtest.h>

#include <QApplication>
#include <QGridLayout>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>
#include <QToolButton>
#include <QTranslator>

#include "host/ZR_ZentriFloatingBtn.h"
#include "host/qtmfc/QMfcApp.h"
#include "tests/support/TestProgram.h"

namespace {

class FloatingBtn : public testing::Test {
protected:
    FloatingBtn() {
        QMfcApp::mfc_instance(&testApp());
        parent.reset(new QWidget);
        parent->resize(400, 300);
        button = new ZR_ZentriFloatingBtn(parent.get());
    }

    void press(QPoint global, Qt::MouseButton which = Qt::LeftButton) {
        QMouseEvent event(QEvent::MouseButtonPress, QPointF(1, 1), global, which, which, Qt::NoModifier);
        QCoreApplication::sendEvent(button, &event);
    }
    void dragTo(QPoint global, Qt::MouseButtons held = Qt::LeftButton) {
        QMouseEvent event(QEvent::MouseMove, QPointF(1, 1), global, Qt::NoButton, held, Qt::NoModifier);
        QCoreApplication::sendEvent(button, &event);
    }

    TestProgram program;
    std::unique_ptr<QWidget> parent;
    ZR_ZentriFloatingBtn* button = nullptr;
};

}  // namespace

TEST_F(FloatingBtn, IsBuiltFromItsForm) {
    EXPECT_EQ(button->objectName(), QStringLiteral("ZR_ZentriFloatingBtnClass"));
    EXPECT_EQ(button->size(), QSize(120, 80));
    EXPECT_EQ(button->styleSheet(),
              QStringLiteral("background:rgba(255,255,255,0.9); \nborder-radius:10px;"));
    EXPECT_EQ(button->windowTitle(), QStringLiteral("ZR_ZentriFloatingBtn"));
    auto* const layout = button->findChild<QGridLayout*>(QStringLiteral("gridLayout"));
    ASSERT_NE(layout, nullptr);
    EXPECT_EQ(layout->horizontalSpacing(), 6);
    EXPECT_EQ(layout->verticalSpacing(), 6);
    EXPECT_EQ(layout->contentsMargins(), QMargins(11, 11, 11, 11));
    auto* const entry = button->findChild<QToolButton*>(QStringLiteral("toolButton_AiChatEntry"));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(layout->itemAtPosition(0, 0)->widget(), entry);
    EXPECT_EQ(entry->text(), QStringLiteral("测试按钮"));
    EXPECT_EQ(entry->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(entry->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(layout->count(), 1);
    EXPECT_EQ(button->parentWidget(), parent.get());
}

TEST_F(FloatingBtn, StaysOnTopAndDeletesItselfWhenClosed) {
    EXPECT_TRUE(button->windowFlags().testFlag(Qt::SplashScreen));
    EXPECT_TRUE(button->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(button->testAttribute(Qt::WA_DeleteOnClose));
    const QPointer<QWidget> watched = button;
    // Qt executes the deferred delete after the event that closes the widget.
    QTimer::singleShot(0, button, &QWidget::close);
    EXPECT_TRUE(TestProgram::pumpUntil([&watched] { return watched.isNull(); }));
}

TEST_F(FloatingBtn, FollowsTheCursorWhileTheLeftButtonIsHeld) {
    button->move(100, 60);
    press(QPoint(110, 70));
    dragTo(QPoint(150, 90));
    EXPECT_EQ(button->pos(), QPoint(140, 80));
}

TEST_F(FloatingBtn, AcceptsTheMouseEventsThatItHandles) {
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(10, 10), QPointF(110, 70), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    press.ignore();
    QCoreApplication::sendEvent(button, &press);
    EXPECT_TRUE(press.isAccepted());
    QMouseEvent move(QEvent::MouseMove, QPointF(20, 20), QPointF(120, 80), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    move.ignore();
    QCoreApplication::sendEvent(button, &move);
    EXPECT_TRUE(move.isAccepted());
}

TEST_F(FloatingBtn, StaysWithinItsParent) {
    button->move(100, 60);
    press(QPoint(110, 70));
    dragTo(QPoint(2000, 2000));
    EXPECT_EQ(button->pos(), QPoint(400 - 120, 300 - 80));
    dragTo(QPoint(-2000, -2000));
    EXPECT_EQ(button->pos(), QPoint(0, 0));
}

TEST_F(FloatingBtn, StaysAtTheOriginOfAParentThatIsTooSmall) {
    parent->resize(60, 40);
    press(QPoint(110, 70));
    dragTo(QPoint(200, 200));
    EXPECT_EQ(button->pos(), QPoint(0, 0));
}

TEST_F(FloatingBtn, OtherButtonsDoNotDragIt) {
    button->move(100, 60);
    press(QPoint(110, 70));
    dragTo(QPoint(150, 90), Qt::RightButton);
    EXPECT_EQ(button->pos(), QPoint(100, 60));
}

TEST_F(FloatingBtn, PressingAnotherButtonKeepsTheDragOffset) {
    button->move(100, 60);
    press(QPoint(110, 70));
    press(QPoint(190, 130), Qt::RightButton);
    dragTo(QPoint(150, 90), Qt::LeftButton | Qt::RightButton);
    EXPECT_EQ(button->pos(), QPoint(140, 80));
}

TEST_F(FloatingBtn, TheOffsetIsZeroBeforeTheFirstPress) {
    dragTo(QPoint(33, 22));
    EXPECT_EQ(button->pos(), QPoint(33, 22));
}

TEST_F(FloatingBtn, WithoutAParentItMovesAnywhere) {
    ZR_ZentriFloatingBtn* const held = button;
    ZR_ZentriFloatingBtn alone;
    button = &alone;
    alone.move(100, 60);
    press(QPoint(110, 70));
    dragTo(QPoint(900, -40));
    EXPECT_EQ(alone.pos(), QPoint(890, -50));
    button = held;
}

TEST_F(FloatingBtn, ItsTextsAreTranslatedInTheContextOfItsForm) {
    class Translator : public QTranslator {
    public:
        bool isEmpty() const override { return false; }
        QString translate(const char* context, const char* text, const char*, int) const override {
            return QString::fromUtf8(context) + QLatin1Char('/') + QString::fromUtf8(text);
        }
    };
    Translator translator;
    QCoreApplication::installTranslator(&translator);
    const ZR_ZentriFloatingBtn translated;
    QCoreApplication::removeTranslator(&translator);
    EXPECT_EQ(translated.windowTitle(), QStringLiteral("ZR_ZentriFloatingBtnClass/ZR_ZentriFloatingBtn"));
}

TEST_F(FloatingBtn, StoresTheFirstRectangleOfTheDrawingView) {
    EXPECT_TRUE(button->drawingViewRect().IsRectEmpty());
    button->lookUpDrawingView();
    CRect expected;
    program.drawingView()->GetWindowRect(&expected);
    ASSERT_FALSE(expected.IsRectEmpty());
    EXPECT_TRUE(button->drawingViewRect().EqualRect(&expected));
    program.drawingView()->MoveWindow(5, 5, 50, 50);
    button->lookUpDrawingView();
    EXPECT_TRUE(button->drawingViewRect().EqualRect(&expected));
}

TEST_F(FloatingBtn, WithoutADrawingTheRectangleStaysEmpty) {
    program.host().setDrawingView(nullptr);
    button->lookUpDrawingView();
    EXPECT_TRUE(button->drawingViewRect().IsRectEmpty());
}
