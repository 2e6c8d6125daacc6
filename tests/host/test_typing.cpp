#include <win32_control.h>

#include <QApplication>
#include <QClipboard>
#include <QTextEdit>
#include <QThread>
#include <algorithm>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "host/ZR_ZentriPalette.h"
#include "tests/host/TypingFixture.h"
#include "view/ZR_ZentriPaletteView.h"

namespace {

/// Two UTF-16 units each: an ideograph beyond the Basic Multilingual Plane and an emoji.
const QString kRareCharacters = QStringLiteral("\U00020BB7\U0001F600");

class Typing : public TypingFixture {
protected:
    Typing() { focusInput(); }

    static void type(const std::initializer_list<int>& keys) {
        for (const int key : keys) {
            TestProgram::typeKey(paletteHandle(), key);
        }
    }

    /// Types a question of one key, sends it and answers it, which takes that many requests.
    void ask(int key, int requests) {
        const int last = service.requestCount() + requests - 1;
        type({key, VK_RETURN});
        ASSERT_TRUE(TestProgram::pumpUntil([&] { return service.requestCount() == last + 1; }));
        service.sendHead(last);
        service.close(last);
        EXPECT_TRUE(TestProgram::pumpUntil(
            [] { return !g_zentriChatThread->isRunning() && !g_zentriCommunicating; }));
        EXPECT_EQ(service.requestCount(), last + 1);
    }
};

/// Records the deepest Qt event loop level at which an event is handled.
class LoopLevels : public QObject {
public:
    LoopLevels() { qApp->installEventFilter(this); }

    bool eventFilter(QObject*, QEvent*) override {
        deepest = std::max(deepest, QThread::currentThread()->loopLevel());
        ++events;
        return false;
    }

    int deepest = 0;
    int events = 0;
};

}  // namespace

TEST_F(Typing, KeysPressedFasterThanTheirCharactersArriveAreTypedInOrder) {
    // Posted at once: every key is handled before the first character, which is queued only then.
    type({'L', 'I', 'N', 'E', VK_SPACE, '1', '0'});
    EXPECT_TRUE(typed(QStringLiteral("line 10"))) << inputBox()->toPlainText().toStdString();
}

TEST_F(Typing, EditingKeysAndCharactersActInOrder) {
    type({'A', 'B', VK_BACK, 'C', VK_LEFT, 'D', VK_HOME, 'E', VK_DELETE, VK_END, 'F'});
    EXPECT_TRUE(typed(QStringLiteral("edcf"))) << inputBox()->toPlainText().toStdString();
}

TEST_F(Typing, AQueuedCharacterIsNotTakenForTheNextKeys) {
    PostMessageW(paletteHandle(), WM_CHAR, u'画', 1);
    // Like a key that is handled out of turn, during a message sent by another program.
    MSG down = {};
    down.hwnd = paletteHandle();
    down.message = WM_KEYDOWN;
    down.wParam = VK_RIGHT;
    down.lParam = 1;
    EXPECT_FALSE(palette()->PreTranslateMessage(&down));
    EXPECT_TRUE(typed(QStringLiteral("画"))) << inputBox()->toPlainText().toStdString();
}

TEST_F(Typing, AQueuedQuitStaysInTheQueue) {
    PostQuitMessage(7);
    MSG down = {};
    down.hwnd = paletteHandle();
    down.message = WM_KEYDOWN;
    down.wParam = VK_RIGHT;
    EXPECT_FALSE(palette()->PreTranslateMessage(&down));
    MSG message = {};
    while (message.message != WM_QUIT && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        DispatchMessageW(&message);
    }
    EXPECT_EQ(message.message, WM_QUIT);
    EXPECT_EQ(message.wParam, 7U);
}

TEST_F(Typing, SurrogatePairsArriveOnce) {
    postCharacters(WM_CHAR, QStringLiteral("画") + kRareCharacters + QStringLiteral("圆"));
    EXPECT_TRUE(typed(QStringLiteral("画") + kRareCharacters + QStringLiteral("圆")))
        << inputBox()->toPlainText().toStdString();
}

TEST_F(Typing, TheTabKeyTypesOneTab) {
    type({'A', VK_TAB, 'B'});
    EXPECT_TRUE(typed(QStringLiteral("a\tb"))) << inputBox()->toPlainText().toStdString();
}

TEST_F(Typing, ReturnSendsOnce) {
    ask('A', 2);
    EXPECT_TRUE(typed(QString()));
    EXPECT_TRUE(service.request(service.requestCount() - 1).body.contains("\"userInput\": \"a\""));
    EXPECT_TRUE(program.host().sent().empty());
}

TEST_F(Typing, ControlKeysActOnceOnTheSystemClipboard) {
    QApplication::clipboard()->setText(QStringLiteral("圆 circle "));
    TestProgram::settle();
    int keysInHost = 0;
    testApp().preTranslate = [&](MSG* message) {
        const BOOL handled = AfxGetApp()->CWinApp::PreTranslateMessage(message);
        keysInHost += message->message == WM_KEYDOWN && message->wParam == 'V' && handled == FALSE ? 1 : 0;
        return handled;
    };
    ASSERT_TRUE(win32KeyStroke('V', false, true));
    ASSERT_TRUE(typed(QStringLiteral("圆 circle "))) << inputBox()->toPlainText().toStdString();
    EXPECT_EQ(keysInHost, 1);
    ASSERT_TRUE(win32KeyStroke('X'));
    ASSERT_TRUE(typed(QStringLiteral("圆 circle x")));
    ASSERT_TRUE(win32KeyStroke('A', false, true));
    ASSERT_TRUE(win32KeyStroke('C', false, true));
    EXPECT_TRUE(TestProgram::pumpUntil(
        [] { return QApplication::clipboard()->text() == QStringLiteral("圆 circle x"); }));
    EXPECT_TRUE(typed(QStringLiteral("圆 circle x")));
    ASSERT_TRUE(win32KeyStroke('V', false, true));
    ASSERT_TRUE(win32KeyStroke('V', false, true));
    EXPECT_TRUE(typed(QStringLiteral("圆 circle x圆 circle x"))) << inputBox()->toPlainText().toStdString();
    EXPECT_TRUE(program.host().sent().empty());
}

TEST_F(Typing, TheFocusMovesBackAndForthAThousandTimes) {
    constexpr int kRounds = 1000;
    constexpr int kTypedEvery = 50;
    const HWND host = program.drawingView()->m_hWnd;
    int charactersInHost = 0;
    testApp().preTranslate = [&](MSG* message) {
        charactersInHost += message->message == WM_CHAR && message->hwnd == host ? 1 : 0;
        return AfxGetApp()->CWinApp::PreTranslateMessage(message);
    };
    QString expected;
    int expectedInHost = 0;
    for (int round = 1; round <= kRounds; ++round) {
        inputBox()->setFocus(Qt::MouseFocusReason);
        ASSERT_EQ(GetFocus(), paletteHandle()) << round;
        ASSERT_EQ(view()->focusWidget(), inputBox()) << round;
        if (round % kTypedEvery == 0) {
            TestProgram::typeKey(GetFocus(), 'A');
            expected += QLatin1Char('a');
            ASSERT_TRUE(typed(expected)) << round;
        }
        SetFocus(host);
        ASSERT_EQ(GetFocus(), host) << round;
        ASSERT_NE(view()->focusWidget(), inputBox()) << round;
        if (round % kTypedEvery == 0) {
            TestProgram::typeKey(GetFocus(), 'B');
            ++expectedInHost;
            ASSERT_TRUE(TestProgram::pumpUntil([&] { return charactersInHost == expectedInHost; })) << round;
        }
    }
    TestProgram::settle();
    EXPECT_EQ(GetFocus(), host);
    EXPECT_EQ(inputBox()->toPlainText(), expected);
    EXPECT_EQ(charactersInHost, expectedInHost);
}

TEST_F(Typing, NoQtEventLoopRunsForAQuestionAndItsAnswer) {
    // Only the call that creates the session of a new conversation may block.
    ask('A', 2);
    const LoopLevels levels;
    ask('A', 1);
    run(_T("KQ_AICHAT"));
    run(_T("KQ_AICHAT"));
    TestProgram::settle();
    EXPECT_GT(levels.events, 0);
    EXPECT_EQ(levels.deepest, 0);
}
