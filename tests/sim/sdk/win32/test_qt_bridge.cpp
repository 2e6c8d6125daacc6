#include "tests/sim/sdk/win32/TestWindow.h"

#include <win32_control.h>

#include <QAbstractEventDispatcher>
#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QTextEdit>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

class NativeFilter : public QAbstractNativeEventFilter {
public:
    bool nativeEventFilter(const QByteArray& type, void* message, long* result) override {
        if (type == "windows_generic_MSG") {
            const MSG seen = *static_cast<MSG*>(message);
            (result == nullptr ? pumped : delivered).push_back(seen);
            if (onMessage) {
                onMessage(seen);
            }
            return taken != 0 && seen.message == taken;
        }
        return false;
    }

    std::vector<MSG> pumped;
    std::vector<MSG> delivered;
    UINT taken = 0;
    std::function<void(const MSG&)> onMessage;
};

struct KeyRecord {
    QEvent::Type type;
    int key;
    Qt::KeyboardModifiers modifiers;
    QString text;
    bool repeated;
};

/// Records the key events of a widget.
class KeyLog : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) {
            const auto* key = static_cast<QKeyEvent*>(event);
            records.push_back({key->type(), key->key(), key->modifiers(), key->text(), key->isAutoRepeat()});
        }
        return false;
    }

    std::vector<KeyRecord> records;
};

/// A frame with a child window that contains a Qt view with a text field and a button with Qt::NoFocus.
class QtEmbedding : public testing::Test {
protected:
    void SetUp() override {
        m_frame = std::make_unique<TestWindow>(WS_OVERLAPPEDWINDOW, RECT{40, 40, 540, 440});
        m_other = std::make_unique<TestWindow>(WS_CHILD | WS_VISIBLE, RECT{0, 0, 200, 100}, *m_frame);
        m_container = std::make_unique<TestWindow>(WS_CHILD | WS_VISIBLE, RECT{0, 100, 400, 350}, *m_frame);
        ShowWindow(*m_frame, SW_SHOW);
        m_view = std::make_unique<QWidget>();
        auto* layout = new QVBoxLayout(m_view.get());
        m_edit = new QTextEdit;
        m_button = new QToolButton;
        m_button->setFocusPolicy(Qt::NoFocus);
        m_button->setText(QStringLiteral("button"));
        layout->addWidget(m_edit);
        layout->addWidget(m_button);
        m_foreign.reset(
            QWindow::fromWinId(static_cast<WId>(reinterpret_cast<std::uintptr_t>(m_container->handle()))));
        m_view->winId();
        m_view->windowHandle()->setParent(m_foreign.get());
        m_view->move(0, 0);
        m_view->resize(400, 250);
        m_view->show();
        ASSERT_TRUE(pumpUntil([this] { return m_view->windowHandle()->isExposed(); }));
        pumpAll();
    }

    void TearDown() override {
        m_view.reset();
        m_foreign.reset();
    }

    HWND view() const { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(m_view->winId())); }

    static void click(const QWidget& widget, const QPoint& position) {
        const QPoint point = widget.mapToGlobal(position);
        ASSERT_TRUE(win32PointerClick(point.x(), point.y()));
    }

    std::unique_ptr<TestWindow> m_frame;
    std::unique_ptr<TestWindow> m_other;
    std::unique_ptr<TestWindow> m_container;
    std::unique_ptr<QWindow> m_foreign;
    std::unique_ptr<QWidget> m_view;
    QTextEdit* m_edit = nullptr;
    QToolButton* m_button = nullptr;
};

}  // namespace

TEST_F(QtEmbedding, QtTimersRunFromTheMessageLoop) {
    int fired = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&fired] { ++fired; });
    timer.start(5);
    EXPECT_TRUE(pumpUntil([&fired] { return fired >= 3; }));
}

TEST_F(QtEmbedding, ViewIsAChildOfTheContainer) {
    EXPECT_TRUE(IsWindow(view()));
    EXPECT_EQ(GetParent(view()), m_container->handle());
    EXPECT_TRUE(IsChild(*m_frame, view()));
    EXPECT_EQ(GetAncestor(view(), GA_ROOT), m_frame->handle());
    RECT container;
    RECT inside;
    ASSERT_TRUE(GetWindowRect(*m_container, &container));
    ASSERT_TRUE(GetWindowRect(view(), &inside));
    EXPECT_EQ(inside.left, container.left);
    EXPECT_EQ(inside.top, container.top);
    EXPECT_EQ(inside.right - inside.left, 400);
    EXPECT_EQ(inside.bottom - inside.top, 250);
}

TEST_F(QtEmbedding, ViewIsPaintedInTheFrame) {
    m_view->setStyleSheet(QStringLiteral("QTextEdit { background: #10C040; border: none; }"));
    pumpAll();
    const auto clusters = win32FindClusters(win32Grab(*m_container), 0x10C040, 2, 1000);
    ASSERT_EQ(clusters.size(), 1U);
    EXPECT_NEAR(clusters[0].right - clusters[0].left, m_edit->width(), 4);
}

TEST_F(QtEmbedding, SentCharacterIsTypedExactlyOnce) {
    m_edit->setFocus();
    SendMessageW(view(), WM_CHAR, u'画', 1);
    SendMessageW(view(), WM_CHAR, u'a', 1);
    pumpAll();
    EXPECT_EQ(m_edit->toPlainText(), QStringLiteral("画a"));
}

TEST_F(QtEmbedding, LoneCharacterHasKeyZeroAndItsText) {
    KeyLog log;
    m_edit->installEventFilter(&log);
    m_edit->setFocus();
    SendMessageW(view(), WM_CHAR, u'a', 1);
    SendMessageW(view(), WM_CHAR, u'\r', 1);
    pumpAll();
    ASSERT_EQ(log.records.size(), 4U);
    EXPECT_EQ(log.records[0].type, QEvent::KeyPress);
    EXPECT_EQ(log.records[0].key, 0);
    EXPECT_EQ(log.records[0].text, QStringLiteral("a"));
    EXPECT_EQ(log.records[1].type, QEvent::KeyRelease);
    EXPECT_EQ(log.records[2].key, 0);
    EXPECT_EQ(log.records[2].text, QStringLiteral("\r"));
    m_edit->removeEventFilter(&log);
}

TEST_F(QtEmbedding, KeyMessagesBecomeQtKeyEvents) {
    KeyLog log;
    m_edit->installEventFilter(&log);
    m_edit->setFocus();
    const struct {
        int virtualKey;
        LPARAM lParam;
        int key;
        const char16_t* text;
    } keys[] = {
        {VK_RETURN, 1, Qt::Key_Return, u"\r"},
        {VK_RETURN, 0x1000001, Qt::Key_Enter, u"\r"},
        {VK_BACK, 1, Qt::Key_Backspace, u"\b"},
        {VK_DELETE, 0x1000001, Qt::Key_Delete, u"\x7f"},
        {VK_LEFT, 0x1000001, Qt::Key_Left, u""},
        {VK_RIGHT, 0x1000001, Qt::Key_Right, u""},
        {VK_UP, 0x1000001, Qt::Key_Up, u""},
        {VK_DOWN, 0x1000001, Qt::Key_Down, u""},
        {VK_HOME, 0x1000001, Qt::Key_Home, u""},
        {VK_END, 0x1000001, Qt::Key_End, u""},
        {VK_PRIOR, 0x1000001, Qt::Key_PageUp, u""},
        {VK_NEXT, 0x1000001, Qt::Key_PageDown, u""},
        {VK_ESCAPE, 1, Qt::Key_Escape, u"\x1b"},
        {VK_F1, 1, Qt::Key_F1, u""},
        {'A', 1, Qt::Key_A, u"A"},
        {'7', 1, Qt::Key_7, u"7"},
        {VK_SPACE, 1, Qt::Key_Space, u" "},
        {VK_OEM_COMMA, 1, Qt::Key_Comma, u","},
    };
    for (const auto& key : keys) {
        log.records.clear();
        SendMessageW(view(), WM_KEYDOWN, static_cast<WPARAM>(key.virtualKey), key.lParam);
        SendMessageW(view(), WM_KEYUP, static_cast<WPARAM>(key.virtualKey), key.lParam);
        ASSERT_EQ(log.records.size(), 2U) << key.virtualKey;
        EXPECT_EQ(log.records[0].type, QEvent::KeyPress);
        EXPECT_EQ(log.records[0].key, key.key) << key.virtualKey;
        EXPECT_EQ(log.records[0].text, QString::fromUtf16(key.text)) << key.virtualKey;
        EXPECT_FALSE(log.records[0].repeated);
        EXPECT_EQ(log.records[1].type, QEvent::KeyRelease);
        EXPECT_EQ(log.records[1].key, key.key);
    }
    m_edit->removeEventFilter(&log);
}

TEST_F(QtEmbedding, KeyDownWithoutAReleaseIsAutoRepeat) {
    KeyLog log;
    m_edit->installEventFilter(&log);
    m_edit->setFocus();
    SendMessageW(view(), WM_KEYDOWN, VK_LEFT, 0x1000001);
    SendMessageW(view(), WM_KEYDOWN, VK_LEFT, 0x1000001);
    ASSERT_EQ(log.records.size(), 3U);
    EXPECT_FALSE(log.records[0].repeated);
    EXPECT_TRUE(log.records[1].repeated);
    EXPECT_TRUE(log.records[2].repeated);
    m_edit->removeEventFilter(&log);
}

TEST_F(QtEmbedding, DispatchedKeyTakesItsCharacterFromTheQueue) {
    KeyLog log;
    m_edit->installEventFilter(&log);
    m_edit->setFocus();
    // As a message loop does: TranslateMessage before DispatchMessage.
    PostMessageW(view(), WM_KEYDOWN, 'K', 1);
    PostMessageW(view(), WM_KEYUP, 'K', 1);
    pumpAll();
    ASSERT_EQ(log.records.size(), 2U);
    EXPECT_EQ(log.records[0].key, Qt::Key_K);
    EXPECT_EQ(log.records[0].text, QStringLiteral("k"));
    EXPECT_EQ(m_edit->toPlainText(), QStringLiteral("k"));
    m_edit->removeEventFilter(&log);
}

TEST_F(QtEmbedding, AHeldKeyKeepsItsTextWhenAFilterPressesOtherKeysMeanwhile) {
    KeyLog log;
    m_edit->installEventFilter(&log);
    m_edit->setFocus();
    SendMessageW(view(), WM_KEYDOWN, 'K', 1);
    NativeFilter filter;
    filter.onMessage = [this](const MSG& message) {
        for (int key = VK_F1; message.message == WM_CHAR && key <= VK_F24; ++key) {
            SendMessageW(view(), WM_KEYDOWN, static_cast<WPARAM>(key), 1);
        }
    };
    QAbstractEventDispatcher::instance()->installNativeEventFilter(&filter);
    PostMessageW(view(), WM_CHAR, u'k', 1);
    SendMessageW(view(), WM_KEYDOWN, 'K', 1);
    QAbstractEventDispatcher::instance()->removeNativeEventFilter(&filter);
    ASSERT_GT(log.records.size(), 24U);
    EXPECT_TRUE(log.records.back().repeated);
    EXPECT_EQ(log.records.back().key, Qt::Key_K);
    EXPECT_EQ(log.records.back().text, log.records.front().text);
    m_edit->removeEventFilter(&log);
}

TEST_F(QtEmbedding, ControlIsAModifierOfPostedKeys) {
    m_edit->setPlainText(QStringLiteral("some text"));
    m_edit->setFocus();
    PostMessageW(view(), WM_KEYDOWN, VK_CONTROL, 1);
    PostMessageW(view(), WM_KEYDOWN, 'A', 1);
    pumpAll();
    PostMessageW(view(), WM_KEYUP, 'A', 1);
    PostMessageW(view(), WM_KEYUP, VK_CONTROL, 1);
    pumpAll();
    EXPECT_EQ(m_edit->textCursor().selectedText(), QStringLiteral("some text"));
}

TEST_F(QtEmbedding, NativeFilterSeesSentMessagesAndMayConsumeThem) {
    NativeFilter filter;
    QAbstractEventDispatcher::instance()->installNativeEventFilter(&filter);
    QWidget window;
    window.show();
    const auto handle = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(window.winId()));
    filter.taken = WM_CLOSE;
    SendMessageW(handle, WM_CLOSE, 0, 0);
    EXPECT_TRUE(window.isVisible());
    filter.taken = 0;
    SendMessageW(handle, WM_CLOSE, 0, 0);
    QAbstractEventDispatcher::instance()->removeNativeEventFilter(&filter);
    EXPECT_FALSE(window.isVisible());
    ASSERT_EQ(filter.delivered.size(), 2U);
    EXPECT_EQ(filter.delivered[0].hwnd, handle);
}

TEST_F(QtEmbedding, NativeFilterDoesNotSeeSentInput) {
    NativeFilter filter;
    QAbstractEventDispatcher::instance()->installNativeEventFilter(&filter);
    m_edit->setFocus();
    filter.taken = WM_CHAR;
    SendMessageW(view(), WM_CHAR, u'x', 1);
    QAbstractEventDispatcher::instance()->removeNativeEventFilter(&filter);
    EXPECT_TRUE(filter.delivered.empty());
    EXPECT_EQ(m_edit->toPlainText(), QStringLiteral("x"));
}

TEST_F(QtEmbedding, ClickIntoTheTextFieldMovesTheFocusThere) {
    SetFocus(*m_other);
    pumpAll();
    m_other->clear();
    click(*m_edit, {30, 20});
    EXPECT_TRUE(pumpUntil([this] { return m_edit->hasFocus(); }));
    EXPECT_EQ(GetFocus(), view());
    EXPECT_EQ(m_other->count(WM_KILLFOCUS), 1);
    // Real keys reach it too.
    ASSERT_TRUE(win32KeyStroke('H'));
    ASSERT_TRUE(win32KeyStroke('I', true));
    EXPECT_TRUE(pumpUntil([this] { return m_edit->toPlainText() == QStringLiteral("hI"); }))
        << m_edit->toPlainText().toStdString();
}

TEST_F(QtEmbedding, ClickOnANoFocusWidgetDoesNotMoveTheFocus) {
    SetFocus(*m_other);
    bool clicked = false;
    QObject::connect(m_button, &QToolButton::clicked, m_button, [&clicked] { clicked = true; });
    click(*m_button, {5, 5});
    EXPECT_TRUE(pumpUntil([&clicked] { return clicked; }));
    pumpAll();
    EXPECT_EQ(GetFocus(), m_other->handle());
}

TEST_F(QtEmbedding, FieldLosesItsFocusWhenTheFocusLeavesTheView) {
    click(*m_edit, {30, 20});
    ASSERT_TRUE(pumpUntil([this] { return m_edit->hasFocus(); }));
    SetFocus(*m_other);
    EXPECT_TRUE(pumpUntil([this] { return !m_edit->hasFocus(); }));
    ASSERT_TRUE(win32KeyStroke('Z'));
    EXPECT_TRUE(pumpUntil([this] { return m_other->count(WM_CHAR) == 1; }));
    EXPECT_EQ(m_edit->toPlainText(), QString());
}

TEST_F(QtEmbedding, FieldKeepsItsCaretAndCharactersWhenTheContainerTakesTheFocus) {
    // The palette does so on every FocusIn, also on two in a row.
    class TakeBack : public QObject {
    public:
        explicit TakeBack(HWND window) : m_window(window) {}
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::FocusIn) {
                SetFocus(m_window);
            }
            return false;
        }

    private:
        HWND m_window;
    } takeBack(*m_container);
    m_edit->installEventFilter(&takeBack);
    m_container->setHandler([this](UINT message, WPARAM, LPARAM, LRESULT&) {
        if (message == WM_KILLFOCUS) {
            m_edit->clearFocus();
        }
        return false;
    });
    for (int round = 0; round < 3; ++round) {
        click(*m_edit, {30, 20});
        pumpAll();
        EXPECT_EQ(GetFocus(), m_container->handle()) << "round " << round;
        EXPECT_TRUE(m_edit->hasFocus()) << "round " << round;
        SendMessageW(view(), WM_CHAR, u'a', 1);
        EXPECT_EQ(m_edit->toPlainText(), QStringLiteral("a")) << "round " << round;
        // Clicks this close together select text: leave none to be selected.
        m_edit->clear();
    }
    SetFocus(*m_other);
    pumpAll();
    EXPECT_FALSE(m_edit->hasFocus());
    click(*m_edit, {30, 20});
    pumpAll();
    EXPECT_EQ(GetFocus(), m_container->handle());
    m_container->setHandler(nullptr);
    m_edit->removeEventFilter(&takeBack);
}

TEST_F(QtEmbedding, DialogEventLoopDispatchesMessagesThroughTheNativeFilter) {
    NativeFilter filter;
    QAbstractEventDispatcher::instance()->installNativeEventFilter(&filter);
    constexpr UINT kPosted = WM_APP + 5;
    QDialog dialog;
    int windowTimer = 0;
    m_frame->setHandler([&](UINT message, WPARAM wParam, LPARAM, LRESULT&) {
        if (message == WM_TIMER && wParam == 9 && ++windowTimer == 3) {
            dialog.accept();
        }
        return false;
    });
    SetTimer(*m_frame, 9, USER_TIMER_MINIMUM, nullptr);
    QTimer::singleShot(0, &dialog, [this] { PostMessageW(*m_frame, kPosted, 1, 2); });
    EXPECT_EQ(dialog.exec(), static_cast<int>(QDialog::Accepted));
    KillTimer(*m_frame, 9);
    QAbstractEventDispatcher::instance()->removeNativeEventFilter(&filter);
    EXPECT_GE(windowTimer, 3);
    EXPECT_EQ(m_frame->count(kPosted), 1);
    const auto seen = std::count_if(filter.pumped.begin(), filter.pumped.end(),
                                    [](const MSG& message) { return message.message == kPosted; });
    EXPECT_EQ(seen, 1);
}

TEST_F(QtEmbedding, DialogRunFromQtInsideGetMessageDispatchesMessages) {
    QDialog dialog;
    int windowTimer = 0;
    m_frame->setHandler([&](UINT message, WPARAM, LPARAM, LRESULT&) {
        if (message == WM_TIMER && ++windowTimer == 3) {
            dialog.accept();
        }
        return false;
    });
    bool ended = false;
    QTimer::singleShot(1, &dialog, [&] {
        SetTimer(*m_frame, 9, USER_TIMER_MINIMUM, nullptr);
        dialog.exec();
        KillTimer(*m_frame, 9);
        ended = true;
    });
    EXPECT_TRUE(pumpUntil([&ended] { return ended; }));
    EXPECT_GE(windowTimer, 3);
}

TEST_F(QtEmbedding, NativeFilterMayConsumeAPostedMessage) {
    NativeFilter filter;
    QAbstractEventDispatcher::instance()->installNativeEventFilter(&filter);
    constexpr UINT kPosted = WM_APP + 6;
    filter.taken = kPosted;
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [&] {
        PostMessageW(*m_frame, kPosted, 0, 0);
        QTimer::singleShot(100, &dialog, &QDialog::accept);
    });
    dialog.exec();
    QAbstractEventDispatcher::instance()->removeNativeEventFilter(&filter);
    EXPECT_EQ(m_frame->count(kPosted), 0);
    EXPECT_EQ(filter.pumped.size(), 1U);
}

TEST_F(QtEmbedding, QuitEndsADialogEventLoopAndIsLostToTheMessageLoop) {
    static std::vector<WPARAM> s_seen;
    const HHOOK hook = SetWindowsHookExW(
        WH_GETMESSAGE,
        [](int code, WPARAM remove, LPARAM lParam) -> LRESULT {
            const auto* const message = reinterpret_cast<const MSG*>(lParam);
            if (remove == PM_REMOVE && message->message == WM_QUIT) {
                s_seen.push_back(message->wParam);
            }
            return CallNextHookEx(nullptr, code, remove, lParam);
        },
        nullptr, GetCurrentThreadId());
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [] { PostQuitMessage(5); });
    dialog.exec();
    UnhookWindowsHookEx(hook);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        EXPECT_NE(message.message, WM_QUIT);
        DispatchMessageW(&message);
    }
    // Hooks see it.
    EXPECT_EQ(s_seen, std::vector<WPARAM>{5});
}

TEST_F(QtEmbedding, DisabledFrameBlocksClicksInItsQtWindows) {
    bool clicked = false;
    QObject::connect(m_button, &QToolButton::clicked, m_button, [&clicked] { clicked = true; });
    EnableWindow(*m_frame, FALSE);
    click(*m_button, {5, 5});
    pumpAll();
    EXPECT_FALSE(clicked);
    EnableWindow(*m_frame, TRUE);
    click(*m_button, {5, 5});
    EXPECT_TRUE(pumpUntil([&clicked] { return clicked; }));
}

TEST_F(QtEmbedding, ClosingADialogReturnsTheFocusToTheFrame) {
    SetFocus(*m_other);
    pumpAll();
    {
        QDialog dialog;
        dialog.show();
        dialog.activateWindow();
        ASSERT_TRUE(pumpUntil([&dialog] { return dialog.isActiveWindow(); }));
        pumpAll();
        EXPECT_NE(GetActiveWindow(), m_frame->handle());
    }
    EXPECT_TRUE(pumpUntil([this] { return GetActiveWindow() == m_frame->handle(); }));
    ASSERT_TRUE(win32KeyStroke('Q'));
    EXPECT_TRUE(pumpUntil([this] { return m_frame->count(WM_CHAR) == 1; }));
}

TEST_F(QtEmbedding, ContainerMayBeDestroyedBeforeTheView) {
    DestroyWindow(*m_container);
    pumpAll();
    EXPECT_FALSE(IsWindowVisible(view()));
    m_view.reset();
    m_foreign.reset();
    pumpAll();
    EXPECT_TRUE(IsWindow(*m_frame));
}

TEST_F(QtEmbedding, ViewMayBeDestroyedBeforeTheContainer) {
    click(*m_edit, {30, 20});
    ASSERT_TRUE(pumpUntil([this] { return m_edit->hasFocus(); }));
    m_view.reset();
    pumpAll();
    SetFocus(*m_other);
    pumpAll();
    EXPECT_EQ(GetFocus(), m_other->handle());
}

TEST_F(QtEmbedding, ViewCanFollowItsContainersSize) {
    m_container->setHandler([this](UINT message, WPARAM, LPARAM, LRESULT&) {
        if (message == WM_SIZE) {
            RECT place;
            GetWindowRect(*m_container, &place);
            m_view->resize(place.right - place.left, place.bottom - place.top);
        }
        return false;
    });
    MoveWindow(*m_container, 0, 100, 300, 200, TRUE);
    pumpAll();
    RECT inside;
    ASSERT_TRUE(GetWindowRect(view(), &inside));
    EXPECT_EQ(inside.right - inside.left, 300);
    EXPECT_EQ(inside.bottom - inside.top, 200);
    m_container->setHandler(nullptr);
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // The build lists the tests, possibly without a display.
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
