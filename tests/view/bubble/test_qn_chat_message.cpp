#include <gtest/gtest.h>

#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QListWidgetItem>
#include <QMovie>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QThread>
#include <QTimer>

#include "chat/ZR_AiChatManager.h"
#include "host/core/ZR_ZentriCmdManager.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/view/support/DebugTraces.h"
#include "tests/view/support/PlainTextMeasure.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ViewTest.h"
#include "view/ZR_AiChatListWidget.h"
#include "view/bubble/QNChatMessage.h"
#include "view/dialogs/ZR_AiChatUserEditDlg.h"

namespace {

class QNChatMessageTest : public ViewTest {
protected:
    void show(QNChatMessage& bubble, const QString& text, int kind, int width = 460) {
        bubble.setFixedWidth(width);
        const QSize size = bubble.fontRect(text);
        bubble.setText(text, QStringLiteral("1700000000"), size, kind);
        bubble.resize(width, size.height());
        bubble.show();
        grabbed(bubble);
    }

    static void press(QNChatMessage& bubble, const QPoint& at, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(&bubble, button, Qt::NoModifier, at);
    }

    static QString tipAt(QNChatMessage& bubble, const QPoint& at) {
        QHelpEvent event(QEvent::ToolTip, at, bubble.mapToGlobal(at));
        QCoreApplication::sendEvent(&bubble, &event);
        return bubble.toolTip();
    }

    /// Calls `work` with the edit dialog once its event loop runs. A window of its type processes events
    /// while it is being shown, and accepting or rejecting it then has no effect.
    template <typename Work>
    void whenEditing(Work work) {
        QTimer::singleShot(0, &m_context, [this, work] {
            if (QThread::currentThread()->loopLevel() == 0) {
                whenEditing(work);
                return;
            }
            auto* dialog = qobject_cast<ZR_AiChatUserEditDlg*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            m_edited = true;
            work(*dialog);
        });
    }

    FakePalette m_palette;
    QObject m_context;
    bool m_edited = false;
};

}  // namespace

TEST_F(QNChatMessageTest, StartsLightWithTheWidgetFontAt12Points) {
    const QNChatMessage bubble;
    EXPECT_EQ(bubble.font().pointSize(), 12);
    EXPECT_EQ(bubble.font().family(), QApplication::font().family());
    EXPECT_EQ(bubble.textColor(), QColor(51, 51, 51));
    EXPECT_EQ(bubble.fillColor(), QColor(229, 246, 254));
    EXPECT_EQ(bubble.linkColor(), QColor(0, 0, 255));
    EXPECT_EQ(bubble.userType(), 0);
    EXPECT_FALSE(bubble.isAnswerLoading());
}

TEST_F(QNChatMessageTest, ThemeZeroIsDarkAndAnyOtherIsLight) {
    QNChatMessage bubble;
    bubble.setColorTheme(0);
    EXPECT_EQ(bubble.textColor(), QColor(229, 246, 254));
    EXPECT_EQ(bubble.fillColor(), QColor(51, 51, 51));
    EXPECT_EQ(bubble.linkColor(), QColor(128, 186, 245));
    bubble.setColorTheme(7);
    EXPECT_EQ(bubble.textColor(), QColor(51, 51, 51));
    EXPECT_EQ(bubble.linkColor(), QColor(0, 0, 255));
}

TEST_F(QNChatMessageTest, LoadingLabelIs16By16AndHasAMovie) {
    const QNChatMessage bubble;
    const auto* label = bubble.findChild<QLabel*>();
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->size(), QSize(16, 16));
    EXPECT_TRUE(label->testAttribute(Qt::WA_TranslucentBackground));
    EXPECT_FALSE(label->autoFillBackground());
    ASSERT_NE(label->movie(), nullptr);
    EXPECT_EQ(label->movie()->fileName(), QStringLiteral(":/img/loading4.gif"));
    EXPECT_EQ(label->movie()->parent(), &bubble);
}

TEST_F(QNChatMessageTest, FontRectSetsTheTextAndReturnsTheBubbleSize) {
    QNChatMessage bubble;
    bubble.setFixedWidth(600);
    const QString text = QStringLiteral("怎样画圆\n怎样画线");
    const QSize size = bubble.fontRect(text);
    const QSize measured = PlainTextMeasure::measure(text, bubble.font(), 426, 174);
    EXPECT_EQ(bubble.msgText(), text);
    EXPECT_EQ(size, QSize(measured.width(), measured.height() + 40));
    EXPECT_EQ(bubble.allSize(), size);
    EXPECT_EQ(bubble.rects().lineHeight, static_cast<int>(QFontMetricsF(bubble.font()).lineSpacing()));
    EXPECT_EQ(bubble.rects().textWidth, 426);
}

TEST_F(QNChatMessageTest, FontRectTracesTheMeasuredSize) {
    DebugTraces traces;
    QNChatMessage bubble;
    bubble.setFixedWidth(600);
    bubble.fontRect(QStringLiteral("A"));
    const QSize measured = PlainTextMeasure::measure(QStringLiteral("A"), bubble.font(), 426, 174);
    EXPECT_TRUE(traces.messages().contains(
        QStringLiteral("fontRect Size: QSize(%1, %2)").arg(measured.width()).arg(measured.height())))
        << traces.messages().join(QLatin1Char('\n')).toStdString();
}

TEST_F(QNChatMessageTest, TimeIsShownAsLocalHoursAndMinutes) {
    QNChatMessage bubble;
    bubble.setText(QStringLiteral("x"), QStringLiteral("1700000000"), QSize(10, 10), 3);
    EXPECT_EQ(bubble.timeText(), QStringLiteral("1700000000"));
    EXPECT_EQ(bubble.curTime(),
              QDateTime::fromSecsSinceEpoch(1700000000).toLocalTime().toString(QStringLiteral("hh:mm")));
    EXPECT_EQ(bubble.allSize(), QSize(10, 10));
    bubble.setText(QStringLiteral("x"), QStringLiteral("rubbish"), QSize(10, 10), 3);
    EXPECT_EQ(bubble.curTime(), QDateTime::fromSecsSinceEpoch(0).toString(QStringLiteral("hh:mm")));
}

TEST_F(QNChatMessageTest, LoadingLabelIsLeftOfAQuestionFrameAndHiddenOtherwise) {
    QNChatMessage bubble;
    show(bubble, QStringLiteral("怎样画圆"), QNChatMessage::Question);
    const auto* label = bubble.findChild<QLabel*>();
    const QRect frame = bubble.rects().frameRightRect;
    EXPECT_TRUE(label->isVisible());
    EXPECT_EQ(label->pos(), QPoint(frame.x() - 10 - 16, frame.y() + frame.height() / 2 - 8));
    show(bubble, QStringLiteral("好"), QNChatMessage::Answer);
    EXPECT_FALSE(label->isVisible());
    show(bubble, QStringLiteral("好"), QNChatMessage::Time);
    EXPECT_FALSE(label->isVisible());
}

TEST_F(QNChatMessageTest, LoadingStartsWithAnEmptyAnswerWithoutARow) {
    QNChatMessage bubble;
    bubble.setFixedWidth(460);
    bubble.fontRect(QStringLiteral("old"));
    bubble.startAnswerLoading();
    EXPECT_TRUE(bubble.isAnswerLoading());
    EXPECT_EQ(bubble.answerText(), QString());
    EXPECT_EQ(bubble.userType(), 2);
    const int lineHeight = bubble.rects().lineHeight;
    EXPECT_EQ(bubble.allSize(), QSize(174, 3 * lineHeight + 40));
}

TEST_F(QNChatMessageTest, StartOfLoadingSetsTheRowSizeForTheEmptyText) {
    QListWidgetItem item;
    item.setSizeHint(QSize(1, 1));
    QNChatMessage bubble;
    bubble.setFixedWidth(460);
    bubble.setProperty(kListItemProperty, QVariant::fromValue(static_cast<void*>(&item)));
    bubble.startAnswerLoading();
    EXPECT_EQ(item.sizeHint(), bubble.allSize());
    EXPECT_GT(item.sizeHint().height(), 70);
}

TEST_F(QNChatMessageTest, PiecesAreAppendedAndTheBubbleGrows) {
    QNChatMessage bubble;
    bubble.setFixedWidth(460);
    bubble.startAnswerLoading();
    bubble.appendAnswerText(QStringLiteral("第一行\n"));
    const int before = bubble.allSize().height();
    bubble.appendAnswerText(QStringLiteral("第二行\n第三行"));
    EXPECT_EQ(bubble.answerText(), QStringLiteral("第一行\n第二行\n第三行"));
    EXPECT_EQ(bubble.allSize().height(), before + bubble.rects().lineHeight);
    EXPECT_EQ(bubble.height(), bubble.allSize().height());
    EXPECT_EQ(bubble.userType(), 2);
}

TEST_F(QNChatMessageTest, PiecesBeforeAndAfterLoadingAreIgnored) {
    QNChatMessage bubble;
    bubble.appendAnswerText(QStringLiteral("too early"));
    EXPECT_EQ(bubble.answerText(), QString());
    bubble.startAnswerLoading();
    bubble.appendAnswerText(QStringLiteral("in time"));
    bubble.stopAnswerLoading();
    bubble.appendAnswerText(QStringLiteral(" too late"));
    EXPECT_EQ(bubble.answerText(), QStringLiteral("in time"));
}

TEST_F(QNChatMessageTest, EndOfLoadingPaintsTheLinksImmediatelyAndMayBeRepeated) {
    QNChatMessage bubble;
    bubble.setFixedWidth(460);
    bubble.show();
    settle();
    bubble.startAnswerLoading();
    bubble.appendAnswerText(QStringLiteral("用【LINE】"));
    EXPECT_TRUE(bubble.linkRuns().empty());
    bubble.stopAnswerLoading();
    EXPECT_FALSE(bubble.isAnswerLoading());
    EXPECT_EQ(bubble.linkRuns().size(), 1U);
    bubble.stopAnswerLoading();
    EXPECT_EQ(bubble.answerText(), QStringLiteral("用【LINE】"));
}

TEST_F(QNChatMessageTest, StreamCallsDoNotAffectQuestionsAndTimeLines) {
    for (const int kind : {int{QNChatMessage::Question}, int{QNChatMessage::Time}}) {
        QNChatMessage bubble;
        show(bubble, QStringLiteral("怎样画线"), kind);
        bubble.startAnswerLoading();
        bubble.appendAnswerText(QStringLiteral("piece"));
        bubble.stopAnswerLoading();
        EXPECT_EQ(bubble.msgText(), QStringLiteral("怎样画线"));
        EXPECT_EQ(bubble.userType(), kind);
        EXPECT_FALSE(bubble.isAnswerLoading());
    }
}

TEST_F(QNChatMessageTest, LoadingKeepsTheTime) {
    QNChatMessage bubble;
    bubble.setFixedWidth(460);
    show(bubble, QStringLiteral("old"), QNChatMessage::Answer);
    bubble.startAnswerLoading();
    EXPECT_EQ(bubble.timeText(), QStringLiteral("1700000000"));
    bubble.appendAnswerText(QStringLiteral("piece"));
    EXPECT_EQ(bubble.timeText(), QStringLiteral("1700000000"));
}

TEST_F(QNChatMessageTest, SetTextSchedulesARepaintAndSetColorThemeDoesNot) {
    QNChatMessage bubble;
    show(bubble, QStringLiteral("怎样画线"), QNChatMessage::Question);
    settle();
    PaintCounter paints(&bubble);
    bubble.setColorTheme(0);
    settle();
    EXPECT_EQ(paints.count(), 0);
    bubble.setText(QStringLiteral("怎样画圆"), bubble.timeText(), bubble.allSize(), QNChatMessage::Question);
    EXPECT_EQ(paints.count(), 0);
    settle();
    EXPECT_EQ(paints.count(), 1);
}

TEST_F(QNChatMessageTest, StopWithoutLoadingDoesNothing) {
    QNChatMessage bubble;
    show(bubble, QStringLiteral("怎样画圆"), QNChatMessage::Question);
    bubble.stopAnswerLoading();
    EXPECT_TRUE(bubble.findChild<QLabel*>()->isVisible());
}

TEST_F(QNChatMessageTest, AnyButtonPressedOnALinkRunsItsCommandUnchanged) {
    QNChatMessage bubble;
    show(bubble, QStringLiteral("用【 多段线 PLINE 】画"), QNChatMessage::Answer);
    ASSERT_EQ(bubble.linkRuns().size(), 1U);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        m_host.clearSent();
        press(bubble, bubble.linkRuns()[0].rect.center(), button);
        ASSERT_EQ(m_host.sent().size(), 1U);
        EXPECT_EQ(toQString(m_host.sent()[0].text), QStringLiteral(" 多段线 PLINE \n"));
    }
    EXPECT_EQ(ZR_ZentriCmdManager::instance().lastRunCommand(), QStringLiteral(" 多段线 PLINE "));
}

TEST_F(QNChatMessageTest, FirstOfOverlappingLinksRuns) {
    // The first link wraps, and the bounding rectangle of its two rows covers the second link.
    QNChatMessage bubble;
    show(bubble,
         QString(12, QChar(u'图')) + QStringLiteral("【多段线多段线】【圆】") + QLatin1Char('\n') +
             QString(40, QChar(u'图')),
         QNChatMessage::Answer);
    ASSERT_EQ(bubble.linkRuns().size(), 2U);
    const QPoint second = bubble.linkRuns()[1].rect.center();
    ASSERT_TRUE(bubble.linkRuns()[0].rect.contains(second));
    press(bubble, second);
    ASSERT_EQ(m_host.sent().size(), 1U);
    EXPECT_EQ(toQString(m_host.sent()[0].text), QStringLiteral("多段线多段线\n"));
}

TEST_F(QNChatMessageTest, HandledPressesAreConsumedAndToolTipEventsPassOn) {
    const auto swallows = [](QNChatMessage& bubble, const QPoint& at) {
        QMouseEvent event(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        return bubble.eventFilter(&bubble, &event);
    };
    QNChatMessage answer;
    show(answer, QStringLiteral("用【LINE】"), QNChatMessage::Answer);
    EXPECT_TRUE(swallows(answer, answer.linkRuns()[0].rect.center()));
    EXPECT_TRUE(swallows(answer, answer.rects().copyAnswerRect.center()));
    EXPECT_TRUE(swallows(answer, answer.rects().regenRect.center()));
    EXPECT_FALSE(swallows(answer, QPoint(1, 1)));
    QNChatMessage question;
    show(question, QStringLiteral("怎样画线"), QNChatMessage::Question);
    EXPECT_TRUE(swallows(question, question.rects().copyQuestionRect.center()));
    whenEditing([](ZR_AiChatUserEditDlg& dialog) { dialog.reject(); });
    EXPECT_TRUE(swallows(question, question.rects().editRect.center()));
    EXPECT_TRUE(m_edited);
    const QPoint icon = question.rects().editRect.center();
    QHelpEvent tip(QEvent::ToolTip, icon, question.mapToGlobal(icon));
    EXPECT_FALSE(question.eventFilter(&question, &tip));
}

TEST_F(QNChatMessageTest, LinkPressEmitsNeitherSignal) {
    QNChatMessage bubble;
    const QSignalSpy links(&bubble, &QNChatMessage::linkActivated);
    const QSignalSpy themes(&bubble, &QNChatMessage::colorThemeChanged);
    show(bubble, QStringLiteral("【LINE】"), QNChatMessage::Answer);
    press(bubble, bubble.linkRuns()[0].rect.center());
    bubble.setColorTheme(0);
    EXPECT_EQ(links.count(), 0);
    EXPECT_EQ(themes.count(), 0);
}

TEST_F(QNChatMessageTest, PressOutsideLinksAndIconsDoesNothing) {
    QNChatMessage bubble;
    show(bubble, QStringLiteral("用【LINE】画"), QNChatMessage::Answer);
    press(bubble, QPoint(1, 1));
    EXPECT_TRUE(m_host.sent().empty());
    EXPECT_TRUE(m_palette.calls.isEmpty());
}

TEST_F(QNChatMessageTest, CopyPutsTheWholeMessageWithBracketsOnTheClipboard) {
    QNChatMessage answer;
    show(answer, QStringLiteral("用【LINE】画\n再按回车"), QNChatMessage::Answer);
    press(answer, answer.rects().copyAnswerRect.center());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("用【LINE】画\n再按回车"));
    QNChatMessage question;
    show(question, QStringLiteral("怎样画线"), QNChatMessage::Question);
    press(question, question.rects().copyQuestionRect.center());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("怎样画线"));
}

TEST_F(QNChatMessageTest, IconsOfOtherKindsDoNotAct) {
    QNChatMessage question;
    show(question, QStringLiteral("怎样画线"), QNChatMessage::Question);
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    press(question, question.rects().copyAnswerRect.center());
    press(question, question.rects().regenRect.center());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
    EXPECT_TRUE(m_palette.calls.isEmpty());
    QNChatMessage time;
    show(time, QStringLiteral("x"), QNChatMessage::Time);
    press(time, time.rects().copyQuestionRect.center());
    press(time, time.rects().copyAnswerRect.center());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
}

TEST_F(QNChatMessageTest, RegenerateSendsTheLastQuestionOfTheSessionEvenIfEmpty) {
    QNChatMessage bubble;
    show(bubble, QStringLiteral("好"), QNChatMessage::Answer);
    press(bubble, bubble.rects().regenRect.center());
    EXPECT_EQ(m_palette.calls, QStringList({QStringLiteral("input:"), QStringLiteral("send")}));
}

TEST_F(QNChatMessageTest, RegenerateWithoutAViewDoesNothing) {
    m_palette.view = nullptr;
    QNChatMessage bubble;
    show(bubble, QStringLiteral("好"), QNChatMessage::Answer);
    press(bubble, bubble.rects().regenRect.center());
    EXPECT_TRUE(m_palette.calls.isEmpty());
}

TEST_F(QNChatMessageTest, AcceptedEditSendsTheChangedText) {
    setHostTheme(0);
    QNChatMessage bubble;
    bubble.move(40, 30);
    show(bubble, QStringLiteral("怎样画线"), QNChatMessage::Question);
    QPoint place;
    whenEditing([&](ZR_AiChatUserEditDlg& dialog) {
        EXPECT_EQ(dialog.editText(), QStringLiteral("怎样画线"));
        EXPECT_EQ(dialog.parentWidget(), &bubble);
        EXPECT_EQ(dialog.property("ZR_ColorTheme").toInt(), 0);
        EXPECT_EQ(dialog.findChild<QTextEdit*>()->property("ZR_ColorTheme").toInt(), 0);
        place = dialog.pos();
        dialog.setEditText(QStringLiteral("怎样画圆"));
        dialog.findChild<QPushButton*>(QStringLiteral("pushButton_Send"))->click();
    });
    press(bubble, bubble.rects().editRect.center());
    EXPECT_TRUE(m_edited);
    EXPECT_EQ(place, bubble.mapToGlobal(bubble.rects().textRightRect.bottomRight()));
    EXPECT_EQ(m_palette.calls, QStringList({QStringLiteral("input:怎样画圆"), QStringLiteral("send")}));
    EXPECT_EQ(bubble.msgText(), QStringLiteral("怎样画线"));
    EXPECT_EQ(bubble.findChild<ZR_AiChatUserEditDlg*>(), nullptr);
}

TEST_F(QNChatMessageTest, AcceptedEditWithEmptyTextSendsAnEmptyQuestion) {
    QNChatMessage bubble;
    show(bubble, QStringLiteral("怎样画线"), QNChatMessage::Question);
    whenEditing([](ZR_AiChatUserEditDlg& dialog) {
        dialog.setEditText(QString());
        dialog.accept();
    });
    bubble.editQuestion();
    EXPECT_EQ(m_palette.calls, QStringList({QStringLiteral("input:"), QStringLiteral("send")}));
}

TEST_F(QNChatMessageTest, AcceptedEditWithoutAViewDoesNothing) {
    m_palette.view = nullptr;
    QNChatMessage bubble;
    show(bubble, QStringLiteral("怎样画线"), QNChatMessage::Question);
    whenEditing([](ZR_AiChatUserEditDlg& dialog) { dialog.accept(); });
    bubble.editQuestion();
    EXPECT_TRUE(m_edited);
    EXPECT_TRUE(m_palette.calls.isEmpty());
}

TEST_F(QNChatMessageTest, CancelledEditChangesNothing) {
    QNChatMessage bubble;
    show(bubble, QStringLiteral("怎样画线"), QNChatMessage::Question);
    whenEditing([](ZR_AiChatUserEditDlg& dialog) {
        dialog.setEditText(QStringLiteral("other"));
        QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("pushButton_Cancel")),
                          Qt::LeftButton);
    });
    bubble.editQuestion();
    EXPECT_TRUE(m_edited);
    EXPECT_TRUE(m_palette.calls.isEmpty());
}

TEST_F(QNChatMessageTest, BubbleMayBeDestroyedWhileItsEditDialogIsOpen) {
    const QPointer<QNChatMessage> bubble = new QNChatMessage;
    show(*bubble, QStringLiteral("怎样画线"), QNChatMessage::Question);
    whenEditing([&](ZR_AiChatUserEditDlg&) { delete bubble.data(); });
    press(*bubble, bubble->rects().editRect.center());
    EXPECT_TRUE(bubble.isNull());
    EXPECT_TRUE(m_palette.calls.isEmpty());
}

TEST_F(QNChatMessageTest, ToolTipsNameTheIconsAndAreNeverClearedAsIntended) {
    QNChatMessage question;
    show(question, QStringLiteral("怎样画线"), QNChatMessage::Question);
    EXPECT_EQ(tipAt(question, QPoint(1, 1)), QString());
    EXPECT_EQ(tipAt(question, question.rects().copyQuestionRect.center()), QStringLiteral("复制"));
    EXPECT_EQ(tipAt(question, question.rects().editRect.center()), QStringLiteral("编辑"));
    EXPECT_EQ(tipAt(question, QPoint(1, 1)), QStringLiteral("编辑"));
    QNChatMessage answer;
    show(answer, QStringLiteral("好"), QNChatMessage::Answer);
    EXPECT_EQ(tipAt(answer, answer.rects().regenRect.center()), QStringLiteral("重新生成"));
    EXPECT_EQ(tipAt(answer, answer.rects().copyAnswerRect.center()), QStringLiteral("复制"));
}

TEST_F(QNChatMessageTest, EventsOfOtherObjectsAreIgnored) {
    QNChatMessage bubble;
    show(bubble, QStringLiteral("好"), QNChatMessage::Answer);
    QWidget other;
    QMouseEvent event(QEvent::MouseButtonPress, bubble.rects().regenRect.center(), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    EXPECT_FALSE(bubble.eventFilter(&other, &event));
    EXPECT_TRUE(m_palette.calls.isEmpty());
}
