#include <gtest/gtest.h>

#include <QClipboard>
#include <QDateTime>
#include <QGraphicsOpacityEffect>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <memory>

#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatModuleState.h"
#include "tests/view/support/PaletteViewTest.h"

namespace {

bool sendKey(QObject* receiver, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
             const QString& text = QString()) {
    QKeyEvent event(type, key, modifiers, text);
    return QCoreApplication::sendEvent(receiver, &event);
}

}  // namespace

TEST_F(PaletteViewTest, FormHasTheNamesAndSettings) {
    EXPECT_EQ(m_view.objectName(), QStringLiteral("ZR_ZentriPaletteViewClass"));
    EXPECT_EQ(ZR_ZentriPaletteView().size(), QSize(627, 673));
    EXPECT_EQ(m_view.windowTitle(), QStringLiteral("ZR_ZentriPaletteView"));
    const auto* outer = qobject_cast<QHBoxLayout*>(m_view.layout());
    EXPECT_EQ(outer->objectName(), QStringLiteral("horizontalLayout_3"));
    EXPECT_EQ(outer->spacing(), 0);
    EXPECT_EQ(outer->contentsMargins(), QMargins(6, 11, 11, 11));
    EXPECT_EQ(outer->sizeConstraint(), QLayout::SetDefaultConstraint);
    ASSERT_EQ(outer->itemAt(2)->layout()->objectName(), QStringLiteral("verticalLayout_2"));
    const auto* main = qobject_cast<QVBoxLayout*>(outer->itemAt(2)->layout());
    EXPECT_EQ(main->spacing(), 6);
    EXPECT_EQ(main->stretch(0), 1);
    EXPECT_EQ(main->stretch(1), 20);
    EXPECT_EQ(main->stretch(2), 6);
    const auto* frame = named<QFrame>("frame_Input");
    EXPECT_EQ(frame->frameShape(), QFrame::NoFrame);
    const auto* inputColumn = qobject_cast<QVBoxLayout*>(frame->layout());
    EXPECT_EQ(inputColumn->objectName(), QStringLiteral("verticalLayout"));
    EXPECT_EQ(inputColumn->contentsMargins(), QMargins(1, 1, 1, 1));
    EXPECT_EQ(inputColumn->stretch(0), 6);
    EXPECT_EQ(inputColumn->stretch(1), 1);
    EXPECT_EQ(outer->itemAt(0)->widget(), sideBar());
    EXPECT_EQ(sideBar()->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);
    EXPECT_EQ(sideBar()->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
    EXPECT_EQ(sideBar()->minimumSize(), QSize(0, 0));
    for (const char* line : {"line", "line_2"}) {
        EXPECT_EQ(named<QFrame>(line)->frameShape(), QFrame::VLine);
        EXPECT_EQ(named<QFrame>(line)->frameShadow(), QFrame::Sunken);
    }
    EXPECT_EQ(list()->editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(list()->selectionMode(), QAbstractItemView::NoSelection);
    EXPECT_EQ(list()->selectionBehavior(), QAbstractItemView::SelectItems);
    EXPECT_EQ(list()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

TEST_F(PaletteViewTest, FormRowsAreInOrder) {
    const auto* main = qobject_cast<QVBoxLayout*>(m_view.layout()->itemAt(2)->layout());
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(m_view.layout()->itemAt(1)->widget(), named<QFrame>("line_2"));
    const auto* header = qobject_cast<QHBoxLayout*>(main->itemAt(0)->layout());
    ASSERT_NE(header, nullptr);
    EXPECT_EQ(header->objectName(), QStringLiteral("horizontalLayout_2"));
    EXPECT_EQ(header->spacing(), 6);
    ASSERT_EQ(header->count(), 5);
    EXPECT_EQ(header->itemAt(0)->widget(), named<QToolButton>("toolButton_HistoricalChat"));
    EXPECT_EQ(header->itemAt(1)->widget(), named<QPushButton>("pushButton_NewChat"));
    EXPECT_EQ(header->itemAt(2)->widget(), named<QFrame>("line"));
    EXPECT_EQ(header->itemAt(3)->widget(), title());
    QSpacerItem* spacer = header->itemAt(4)->spacerItem();
    ASSERT_NE(spacer, nullptr);
    EXPECT_EQ(spacer->sizeHint(), QSize(40, 20));
    EXPECT_EQ(spacer->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(spacer->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
    EXPECT_EQ(main->itemAt(1)->widget(), list());
    EXPECT_EQ(main->itemAt(2)->widget(), named<QFrame>("frame_Input"));

    const auto* inputColumn = qobject_cast<QVBoxLayout*>(named<QFrame>("frame_Input")->layout());
    ASSERT_NE(inputColumn, nullptr);
    EXPECT_EQ(inputColumn->spacing(), 6);
    EXPECT_EQ(inputColumn->itemAt(0)->widget(), input());
    const auto* buttons = qobject_cast<QHBoxLayout*>(inputColumn->itemAt(1)->layout());
    ASSERT_NE(buttons, nullptr);
    EXPECT_EQ(buttons->objectName(), QStringLiteral("horizontalLayout"));
    EXPECT_EQ(buttons->spacing(), 6);
    ASSERT_EQ(buttons->count(), 2);
    spacer = buttons->itemAt(0)->spacerItem();
    ASSERT_NE(spacer, nullptr);
    EXPECT_EQ(spacer->sizeHint(), QSize(40, 20));
    EXPECT_EQ(spacer->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(buttons->itemAt(1)->widget(), named<QToolButton>("toolButton_Send"));
}

TEST_F(PaletteViewTest, ButtonsTitleAndInputHaveTheirTextsAndSettings) {
    EXPECT_EQ(named<QPushButton>("pushButton_NewChat")->text(), QStringLiteral("+ 新对话"));
    EXPECT_EQ(named<QPushButton>("pushButton_NewChat")->focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(named<QToolButton>("toolButton_HistoricalChat")->focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(named<QToolButton>("toolButton_HistoricalChat")->toolTip(), QStringLiteral("展开侧边栏"));
    EXPECT_EQ(named<QToolButton>("toolButton_HistoricalChat")->text(), QString());
    EXPECT_EQ(named<QToolButton>("toolButton_Send")->toolTip(), QStringLiteral("发送"));
    EXPECT_EQ(named<QToolButton>("toolButton_Send")->text(), QString());
    EXPECT_EQ(title()->text(), QStringLiteral("对话标题"));
    EXPECT_EQ(title()->font().pixelSize(), 14);
    EXPECT_EQ(input()->placeholderText(), QStringLiteral("请输入您的CAD操作问题"));
    EXPECT_EQ(input()->focusPolicy(), Qt::ClickFocus);
    EXPECT_EQ(input()->contextMenuPolicy(), Qt::NoContextMenu);
    EXPECT_FALSE(input()->isReadOnly());
    EXPECT_EQ(input()->font().style(), QFont::StyleNormal);
    EXPECT_EQ(input()->font().weight(), static_cast<int>(QFont::Normal));
    EXPECT_TRUE(input()->sizePolicy().retainSizeWhenHidden());
}

TEST_F(PaletteViewTest, SendButtonIs20By20) {
    const ZR_ZentriPaletteView view;
    EXPECT_EQ(view.findChild<QToolButton*>(QStringLiteral("toolButton_Send"))->size(), QSize(20, 20));
}

TEST_F(PaletteViewTest, StartsWithTheSideBarClosed) {
    EXPECT_FALSE(shown("widget_SideBar"));
    EXPECT_FALSE(shown("line_2"));
    EXPECT_TRUE(shown("line"));
    EXPECT_TRUE(shown("toolButton_HistoricalChat"));
    EXPECT_TRUE(shown("pushButton_NewChat"));
    auto* effect = qobject_cast<QGraphicsOpacityEffect*>(sideBar()->graphicsEffect());
    ASSERT_NE(effect, nullptr);
    EXPECT_EQ(effect->opacity(), 0.0);
    for (const char* property : {"animationWidth", "opacity"}) {
        EXPECT_EQ(animation(property)->duration(), 800);
        EXPECT_EQ(animation(property)->easingCurve().type(), QEasingCurve::InOutSine);
    }
    EXPECT_EQ(animation("animationWidth")->targetObject(), sideBar());
    EXPECT_EQ(animation("opacity")->targetObject(), effect);
}

TEST_F(PaletteViewTest, OnlyTheHistoryButtonIsDarkUntilAThemeIsSet) {
    EXPECT_EQ(named<QWidget>("toolButton_HistoricalChat")->property("ZR_ColorTheme").toInt(), 0);
    for (const char* name : {"pushButton_NewChat", "label_ChatTitle", "listWidget_ChatView", "frame_Input",
                             "textEdit_userInput", "toolButton_Send", "widget_SideBar"}) {
        EXPECT_EQ(named<QWidget>(name)->property("ZR_ColorTheme").toInt(), 1) << name;
    }
    EXPECT_EQ(m_view.property("ZR_ColorTheme").toInt(), 1);
    for (const QWidget* widget : m_view.findChildren<QWidget*>()) {
        const QVariant theme = widget->property("ZR_ColorTheme");
        EXPECT_TRUE(!theme.isValid() || theme.toInt() == 1 ||
                    widget->objectName() == QStringLiteral("toolButton_HistoricalChat"))
            << widget->objectName().toStdString();
    }
}

// Sending

TEST_F(PaletteViewTest, FirstQuestionBecomesTheTitleAndIsSent) {
    answerCreate(QStringLiteral("s1"));
    answerChat("data:用【CIRCLE】\n\n");
    sendQuestion(QStringLiteral("怎样画圆"));
    EXPECT_EQ(input()->toPlainText(), QString());
    EXPECT_EQ(title()->text(), QStringLiteral("怎样画圆"));
    ASSERT_EQ(list()->count(), 2);
    EXPECT_TRUE(bubble(1)->isAnswerLoading());
    ASSERT_TRUE(waitFor([&] { return !bubble(1)->isAnswerLoading(); }));
    EXPECT_EQ(texts(), QStringList({QStringLiteral("1:怎样画圆"), QStringLiteral("2:用【CIRCLE】")}));
    ASSERT_TRUE(waitUntilIdle());

    sendQuestion(QStringLiteral("怎样画线"));
    EXPECT_EQ(title()->text(), QStringLiteral("怎样画圆"));
    EXPECT_EQ(list()->count(), 4);
    ASSERT_TRUE(waitFor([&] { return !bubble(3)->isAnswerLoading(); }));
}

TEST_F(PaletteViewTest, InputIsClearedAndTitleSetBeforeTheFirstRowIsInserted) {
    answerCreate(QStringLiteral("s1"));
    answerChat("");
    QStringList seen;
    QObject::connect(list()->model(), &QAbstractItemModel::rowsInserted, list(),
                     [&] { seen.append(input()->toPlainText() + QLatin1Char('|') + title()->text()); });
    sendQuestion(QStringLiteral("怎样画圆"));
    EXPECT_EQ(seen, QStringList({QStringLiteral("|怎样画圆"), QStringLiteral("|怎样画圆")}));
}

TEST_F(PaletteViewTest, RefusalKeepsTheInputAndTheList) {
    signOut();
    sendQuestion(QStringLiteral("怎样画圆"));
    EXPECT_EQ(input()->toPlainText(), QStringLiteral("怎样画圆"));
    EXPECT_EQ(list()->count(), 0);
    EXPECT_EQ(title()->text(), QStringLiteral("对话标题"));
    EXPECT_EQ(printed(), QStringLiteral("\n尚未登录！"));
}

TEST_F(PaletteViewTest, EmptyInputIsSentAndBecomesTheTitle) {
    answerCreate(QStringLiteral("s1"));
    answerChat("data:?\n\n");
    sendQuestion(QString());
    EXPECT_EQ(title()->text(), QString());
    ASSERT_EQ(list()->count(), 2);
    EXPECT_EQ(bubble(0)->msgText(), QString());
    ASSERT_TRUE(waitFor([&] { return bubble(1)->msgText() == QStringLiteral("?"); }));
}

TEST_F(PaletteViewTest, SendButtonSends) {
    answerCreate(QStringLiteral("s1"));
    answerChat("");
    input()->setPlainText(QStringLiteral("a"));
    QTest::mouseClick(named<QToolButton>("toolButton_Send"), Qt::LeftButton);
    EXPECT_EQ(list()->count(), 2);
}

TEST_F(PaletteViewTest, AnswerStreamsIntoTheLastRowAndTheListScrolls) {
    answerCreate(QStringLiteral("s1"));
    m_view.resize(627, 320);
    settle();
    sendQuestion(QStringLiteral("怎样画圆"));
    ASSERT_TRUE(m_server.waitForRequests(2));
    const int chat = m_server.requestCount() - 1;
    ASSERT_EQ(m_server.request(chat).target, kChatTarget);
    m_server.sendHead(chat);
    m_server.sendBytes(chat, "data:一\ndata:二\ndata:三\n\n");
    ASSERT_TRUE(waitFor([&] { return bubble(1)->msgText() == QStringLiteral("一\n二\n三"); }));
    EXPECT_TRUE(bubble(1)->isAnswerLoading());
    EXPECT_EQ(list()->item(1)->sizeHint(), bubble(1)->allSize());
    m_server.sendBytes(chat, "data:\ndata:四\ndata:五\ndata:六\n\n");
    ASSERT_TRUE(waitFor([&] { return bubble(1)->msgText().endsWith(QStringLiteral("六")); }));
    EXPECT_EQ(list()->verticalScrollBar()->value(), list()->verticalScrollBar()->maximum());
    EXPECT_GT(list()->verticalScrollBar()->maximum(), 0);
    m_server.close(chat);
    ASSERT_TRUE(waitFor([&] { return !bubble(1)->isAnswerLoading(); }));
}

TEST_F(PaletteViewTest, ListMayBeClearedWhileAnAnswerStreams) {
    answerCreate(QStringLiteral("s1"));
    sendQuestion(QStringLiteral("怎样画圆"));
    ASSERT_TRUE(m_server.waitForRequests(2));
    const int chat = m_server.requestCount() - 1;
    m_server.sendHead(chat);
    m_server.sendBytes(chat, "data:一\n\n");
    ASSERT_TRUE(waitFor([&] { return bubble(1)->msgText() == QStringLiteral("一"); }));
    list()->clear();
    m_server.sendBytes(chat, "data:二\n\n");
    settle();
    m_server.sendBytes(chat, "data:三\n\n");
    m_server.close(chat);
    EXPECT_TRUE(waitUntilIdle());
    EXPECT_EQ(list()->count(), 0);
}

TEST_F(PaletteViewTest, EditedQuestionStaysInTheInputWhileAnAnswerStreams) {
    g_zentriCommunicating = true;
    m_view.setInputText(QStringLiteral("edited"));
    m_view.sendInput();
    EXPECT_EQ(input()->toPlainText(), QStringLiteral("edited"));
    EXPECT_EQ(list()->count(), 0);
    EXPECT_EQ(printed(), QStringLiteral("\n已有正在通信的对话，请等待该通信完成..."));
}

TEST_F(PaletteViewTest, RegenerateAppendsTheLastQuestionOfTheSession) {
    answerCreate(QStringLiteral("s1"));
    answerChat("data:A\n\n");
    sendQuestion(QStringLiteral("first"));
    ASSERT_TRUE(waitFor([&] { return !bubble(1)->isAnswerLoading(); }));
    ASSERT_TRUE(waitUntilIdle());
    sendQuestion(QStringLiteral("second"));
    ASSERT_TRUE(waitFor([&] { return !bubble(3)->isAnswerLoading(); }));
    ASSERT_TRUE(waitUntilIdle());
    // The icon of the first answer resends the last question, too.
    bubble(1)->regenerate();
    ASSERT_EQ(list()->count(), 6);
    EXPECT_EQ(bubble(4)->msgText(), QStringLiteral("second"));
    ASSERT_TRUE(waitFor([&] { return !bubble(5)->isAnswerLoading(); }));
}

TEST_F(PaletteViewTest, SetInputTextSetsPlainTextAndClearsTheFocus) {
    input()->setFocus();
    ASSERT_EQ(m_view.focusWidget(), input());
    m_view.setInputText(QStringLiteral("<b>x</b>"));
    EXPECT_EQ(input()->toPlainText(), QStringLiteral("<b>x</b>"));
    EXPECT_NE(m_view.focusWidget(), input());
}

TEST_F(PaletteViewTest, ViewMayBeDestroyedWhileAnAnswerStreams) {
    answerCreate(QStringLiteral("s1"));
    auto view = std::make_unique<ZR_ZentriPaletteView>();
    m_palette.view = view.get();
    view->setInputText(QStringLiteral("怎样画圆"));
    view->sendInput();
    ASSERT_TRUE(m_server.waitForRequests(2));
    const int chat = m_server.requestCount() - 1;
    m_server.sendHead(chat);
    m_server.sendBytes(chat, "data:一\n\n");
    m_palette.view = nullptr;
    view.reset();
    m_server.sendBytes(chat, "data:二\n\n");
    settle();
    m_server.close(chat);
    EXPECT_TRUE(waitUntilIdle());
}

TEST_F(PaletteViewTest, StreamStartScrollsToTheBottom) {
    for (int i = 0; i < 12; ++i) {
        list()->addQuestion(QStringLiteral("filler"));
    }
    settle();
    list()->verticalScrollBar()->setValue(0);
    m_view.onStreamStart();
    EXPECT_GT(list()->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(list()->verticalScrollBar()->value(), list()->verticalScrollBar()->maximum());
}

TEST_F(PaletteViewTest, StreamProcessMeasuresTheLastRowAndScrolls) {
    for (int i = 0; i < 12; ++i) {
        list()->addQuestion(QStringLiteral("filler"));
    }
    QNChatMessage* answer = list()->addLoadingAnswer();
    answer->appendAnswerText(QStringLiteral("1\n2\n3"));
    m_view.onStreamProcess();
    EXPECT_EQ(list()->item(12)->sizeHint(), answer->allSize());
    EXPECT_EQ(list()->verticalScrollBar()->value(), list()->verticalScrollBar()->maximum());
}

TEST_F(PaletteViewTest, StreamEndMeasuresTheLastRowWithoutScrolling) {
    for (int i = 0; i < 12; ++i) {
        list()->addQuestion(QStringLiteral("filler"));
    }
    QNChatMessage* answer = list()->addLoadingAnswer();
    settle();
    list()->verticalScrollBar()->setValue(0);
    answer->appendAnswerText(QStringLiteral("1\n2\n3"));
    m_view.onStreamEnd();
    EXPECT_EQ(list()->item(12)->sizeHint(), answer->allSize());
    EXPECT_EQ(list()->verticalScrollBar()->value(), 0);
}

// New chat and old sessions

TEST_F(PaletteViewTest, NewChatFilesTheRecordAndClearsThePanel) {
    answerCreate(QStringLiteral("s1"));
    answerChat("data:A\n\n");
    sendQuestion(QStringLiteral("first"));
    ASSERT_TRUE(waitFor([&] { return !bubble(1)->isAnswerLoading(); }));
    ASSERT_TRUE(waitUntilIdle());
    QTest::mouseClick(named<QPushButton>("pushButton_NewChat"), Qt::LeftButton);
    EXPECT_EQ(list()->count(), 0);
    EXPECT_EQ(title()->text(), QString());
    ZR_AiChatSingleChatRecord current;
    ZR_AiChatManager::instance().getCurrentRecord(current);
    EXPECT_TRUE(current.GetSessionId().IsEmpty());
    EXPECT_TRUE(ZR_AiChatManager::instance().findSession(_T("s1"), current));
}

TEST_F(PaletteViewTest, NewChatIsRefusedLikeASend) {
    answerCreate(QStringLiteral("s1"));
    answerChat("");
    list()->addQuestion(QStringLiteral("old"));
    title()->setText(QStringLiteral("title"));
    signOut();
    m_view.pushBtnNewChat_clicked();
    EXPECT_EQ(list()->count(), 1);
    EXPECT_EQ(title()->text(), QStringLiteral("title"));
    EXPECT_EQ(printed(), QStringLiteral("\n尚未登录！"));
}

TEST_F(PaletteViewTest, NewChatButtonOfTheSideBarDoesTheSame) {
    list()->addQuestion(QStringLiteral("old"));
    QTest::mouseClick(sideBar()->findChild<QPushButton*>(QStringLiteral("pushButton_NewChat")),
                      Qt::LeftButton);
    EXPECT_EQ(list()->count(), 0);
    EXPECT_EQ(title()->text(), QString());
}

TEST_F(PaletteViewTest, PickedSessionIsShown) {
    loadHistory({{QStringLiteral("a"), {QStringLiteral("Q1"), QStringLiteral("A1")}, 1700000000},
                 {QStringLiteral("b"),
                  {QStringLiteral("Q2"), QStringLiteral("A2"), QStringLiteral("Q3")},
                  1700000001}});
    list()->addQuestion(QStringLiteral("old"));
    emit sideBar()->SideBar_chatPage_Clicked(QStringLiteral("b"));
    EXPECT_EQ(title()->text(), QStringLiteral("Q2"));
    EXPECT_EQ(texts(), QStringList({QStringLiteral("1:Q2"), QStringLiteral("2:A2"), QStringLiteral("1:Q3")}));
    EXPECT_FALSE(bubble(1)->isAnswerLoading());
}

TEST_F(PaletteViewTest, SessionsAppearInTheSideBarAndTheCurrentOneIsSelected) {
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    loadHistory({{QStringLiteral("a"), {QStringLiteral("Q1")}, now},
                 {QStringLiteral("b"), {QStringLiteral("Q2")}, now}});
    auto* history = sideBar()->findChild<QListWidget*>(QStringLiteral("listWidget_DatedChats"));
    ASSERT_NE(history, nullptr);
    EXPECT_EQ(history->count(), 2);
    EXPECT_EQ(history->currentRow(), -1);
    emit sideBar()->SideBar_chatPage_Clicked(QStringLiteral("b"));
    EXPECT_EQ(history->currentRow(), 1);
}

TEST_F(PaletteViewTest, OpeningTheBarFitsItsPages) {
    loadHistory({{QStringLiteral("a"), {QStringLiteral("Q1")}, QDateTime::currentSecsSinceEpoch()}});
    auto* history = sideBar()->findChild<QListWidget*>(QStringLiteral("listWidget_DatedChats"));
    ASSERT_NE(history, nullptr);
    history->setMinimumHeight(500);
    m_view.toolBtnHistoricalChat_clicked(false);
    EXPECT_LT(history->minimumHeight(), 100);
}

TEST_F(PaletteViewTest, PickingASessionIsRefusedWhileAnAnswerStreams) {
    loadHistory({{QStringLiteral("a"), {QStringLiteral("Q1")}, 1700000000}});
    answerCreate(QStringLiteral("s1"));
    sendQuestion(QStringLiteral("now"));
    ASSERT_TRUE(m_server.waitForRequests(4));
    m_host.clearPrinted();
    emit sideBar()->SideBar_chatPage_Clicked(QStringLiteral("a"));
    EXPECT_EQ(printed(), QStringLiteral("\n当前有正在进行的通信,请等待通信结束..."));
    EXPECT_EQ(title()->text(), QStringLiteral("now"));
    m_server.sendEmptyReply(m_server.requestCount() - 1, 200);
}

TEST_F(PaletteViewTest, UnitsOfOtherKindsAreNotShown) {
    ZR_AiChatSingleChatRecord record;
    record.AddUnit(0, _T("Q"), 1);
    record.AddUnit(2, _T("odd"), 2);
    record.AddUnit(7, _T("odd"), 3);
    record.AddUnit(1, _T("A"), 4);
    m_view.showChatRecord(record);
    EXPECT_EQ(texts(), QStringList({QStringLiteral("1:Q"), QStringLiteral("2:A")}));
}

TEST_F(PaletteViewTest, EmptyRecordClearsThePanel) {
    list()->addQuestion(QStringLiteral("old"));
    m_view.showCurrentSession();
    EXPECT_EQ(list()->count(), 0);
    EXPECT_EQ(title()->text(), QString());
}

// Keys and focus

TEST_F(PaletteViewTest, PrintableKeyEventsAreConsumedInBothBoxes) {
    for (QTextEdit* box : {input(), search()}) {
        for (const int key : {0x20, int{Qt::Key_A}, int{Qt::Key_0}, 0x7E}) {
            sendKey(box, QEvent::KeyPress, key, Qt::NoModifier, QStringLiteral("x"));
            sendKey(box, QEvent::KeyPress, key, Qt::ShiftModifier, QStringLiteral("x"));
            QKeyEvent withMore(QEvent::KeyPress, key, Qt::ControlModifier | Qt::ShiftModifier);
            EXPECT_TRUE(m_view.eventFilter(box, &withMore)) << key;
            QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
            EXPECT_TRUE(m_view.eventFilter(box, &release)) << key;
        }
        EXPECT_EQ(box->toPlainText(), QString());
    }
}

TEST_F(PaletteViewTest, CharactersWithoutAKeyCodeAreInserted) {
    // Qt makes such an event of a WM_CHAR without a key message.
    sendKey(input(), QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("圆"));
    sendKey(input(), QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("A"));
    EXPECT_EQ(input()->toPlainText(), QStringLiteral("圆A"));
    sendKey(search(), QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("线"));
    EXPECT_EQ(search()->toPlainText(), QStringLiteral("线"));
}

TEST_F(PaletteViewTest, SurrogatePairIsInsertedWithItsSecondHalf) {
    const QString rare = QStringLiteral("\U00020BB7");
    for (const QChar unit : QStringLiteral("a") + rare + rare) {
        sendKey(input(), QEvent::KeyPress, 0, Qt::NoModifier, QString(unit));
        sendKey(input(), QEvent::KeyRelease, 0, Qt::NoModifier, QString(unit));
    }
    EXPECT_EQ(input()->toPlainText(), QStringLiteral("a") + rare + rare);
    for (const QChar unit : rare) {
        // The key press that comes with each half of an injected character.
        sendKey(search(), QEvent::KeyPress, 0);
        sendKey(search(), QEvent::KeyPress, 0, Qt::NoModifier, QString(unit));
    }
    EXPECT_EQ(search()->toPlainText(), rare);
}

TEST_F(PaletteViewTest, LoneSurrogateIsNotInserted) {
    const QString rare = QStringLiteral("\U00020BB7");
    const QString first(rare[0]);
    const QString second(rare[1]);
    for (const QString& text : {second, first, QStringLiteral("b"), second, first, first, second}) {
        sendKey(input(), QEvent::KeyPress, 0, Qt::NoModifier, text);
    }
    EXPECT_EQ(input()->toPlainText(), QStringLiteral("b") + rare);
}

TEST_F(PaletteViewTest, TabIsInsertedOnceForKeyAndCharacter) {
    sendKey(input(), QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
    sendKey(input(), QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("\t"));
    EXPECT_EQ(input()->toPlainText(), QStringLiteral("\t"));
    // Shift+Tab produces the same character.
    sendKey(input(), QEvent::KeyPress, Qt::Key_Backtab, Qt::ShiftModifier, QStringLiteral("\t"));
    sendKey(input(), QEvent::KeyPress, 0, Qt::ShiftModifier, QStringLiteral("\t"));
    EXPECT_EQ(input()->toPlainText(), QStringLiteral("\t\t"));
}

TEST_F(PaletteViewTest, KeysJustOutsideThePrintableRangePassOn) {
    for (const int key : {0x1F, 0x7F, int{Qt::Key_Backspace}, int{Qt::Key_Left}, int{Qt::Key_F1}}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        EXPECT_FALSE(m_view.eventFilter(input(), &press)) << key;
    }
}

TEST_F(PaletteViewTest, ControlKeyCombinationsStillWork) {
    input()->setPlainText(QStringLiteral("copied"));
    sendKey(input(), QEvent::KeyPress, Qt::Key_A, Qt::ControlModifier);
    sendKey(input(), QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("copied"));
    QGuiApplication::clipboard()->setText(QStringLiteral("pasted"));
    sendKey(input(), QEvent::KeyPress, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(input()->toPlainText(), QStringLiteral("pasted"));
}

TEST_F(PaletteViewTest, ReturnAndEnterSendAndAreConsumed) {
    signOut();
    for (const int key : {int{Qt::Key_Return}, int{Qt::Key_Enter}}) {
        m_host.clearPrinted();
        input()->setPlainText(QStringLiteral("a"));
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QStringLiteral("\r"));
        EXPECT_TRUE(m_view.eventFilter(input(), &press));
        EXPECT_EQ(printed(), QStringLiteral("\n尚未登录！"));
        EXPECT_EQ(input()->toPlainText(), QStringLiteral("a"));
    }
    // With other modifiers than Shift they send, too.
    m_host.clearPrinted();
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(m_view.eventFilter(input(), &press));
    EXPECT_FALSE(printed().isEmpty());
}

TEST_F(PaletteViewTest, ShiftReturnInsertsALineBreak) {
    input()->setPlainText(QString());
    sendKey(input(), QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("a"));
    sendKey(input(), QEvent::KeyPress, Qt::Key_Return, Qt::ShiftModifier, QStringLiteral("\r"));
    sendKey(input(), QEvent::KeyPress, Qt::Key_Enter, Qt::ShiftModifier | Qt::KeypadModifier,
            QStringLiteral("\r"));
    sendKey(input(), QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("b"));
    EXPECT_EQ(input()->toPlainText(), QStringLiteral("a\n\nb"));
    EXPECT_EQ(list()->count(), 0);
}

TEST_F(PaletteViewTest, ReturnInTheSearchBoxNeitherSendsNorInsertsALineBreak) {
    signOut();
    sendKey(search(), QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    EXPECT_EQ(printed(), QString());
    EXPECT_EQ(search()->toPlainText(), QString());
}

TEST_F(PaletteViewTest, FocusInGivesThePaletteTheNativeFocusAndPassesOn) {
    for (QTextEdit* box : {input(), search()}) {
        m_palette.focusTaken = 0;
        QFocusEvent focus(QEvent::FocusIn, Qt::MouseFocusReason);
        EXPECT_FALSE(m_view.eventFilter(box, &focus));
        EXPECT_EQ(m_palette.focusTaken, 1);
    }
    QFocusEvent focus(QEvent::FocusIn);
    m_view.eventFilter(title(), &focus);
    EXPECT_EQ(m_palette.focusTaken, 1);
}

TEST_F(PaletteViewTest, FocusInWithoutAPaletteIsHarmless) {
    setZentriPaletteAccess(nullptr);
    QFocusEvent focus(QEvent::FocusIn);
    EXPECT_FALSE(m_view.eventFilter(input(), &focus));
}

TEST_F(PaletteViewTest, ClearInputFocusClearsTheFocusOfBothBoxes) {
    m_view.toolBtnHistoricalChat_clicked(false);
    finishAnimations();
    for (QTextEdit* box : {input(), search()}) {
        box->setFocus();
        ASSERT_EQ(m_view.focusWidget(), box);
        m_view.clearInputFocus();
        EXPECT_NE(m_view.focusWidget(), box);
    }
}
