#pragma once

#include <gtest/gtest.h>

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <functional>
#include <initializer_list>
#include <memory>

#include "chat/ZR_AiChatAnswerInterface.h"
#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatViewInterface.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "tests/support/FakeArxHost.h"

class ZR_AiChatCSThread;
class ZR_AiChatReadHistoricalChatThread;

/// The manager's calls of bubbles and the view, in order.
using Calls = QStringList;

/// An answer bubble that keeps its text and records its calls.
class FakeAnswer : public QObject, public ZR_AiChatAnswerInterface {
public:
    explicit FakeAnswer(Calls& calls) : m_calls(calls) {}

    void startAnswerLoading() override;
    void appendAnswerText(const QString& piece) override;
    void stopAnswerLoading() override;
    QString answerText() const override { return m_text; }
    QObject* answerObject() override { return this; }

    /// Called within startAnswerLoading() and stopAnswerLoading(), after the call has been recorded.
    std::function<void()> onCall;

private:
    void take(const QString& call);

    Calls& m_calls;
    QString m_text;
};

/// The palette and its view in one, registered as the palette while it exists.
class FakeChatView : public ZR_AiChatViewInterface, public ZR_ZentriPaletteAccess {
public:
    explicit FakeChatView(Calls& calls) : m_calls(calls) { setZentriPaletteAccess(this); }
    ~FakeChatView() override { setZentriPaletteAccess(nullptr); }

    void onStreamStart() override { take(QStringLiteral("view start")); }
    void onStreamProcess() override { take(QStringLiteral("view process")); }
    void onStreamEnd() override { take(QStringLiteral("view end")); }
    void showCurrentSession() override { take(QStringLiteral("view show current")); }
    void updateSideBarSessions(const ZR_AiChatSessionList& sessions) override;
    void setInputText(const QString&) override {}
    void sendInput() override {}
    QRect viewGeometry() const override { return QRect(); }

    ZR_AiChatViewInterface* chatView() override { return this; }
    void setColorTheme(int) override {}
    void takeKeyboardFocus() override {}

    /// Called within each call of the manager, after it has been recorded.
    std::function<void()> onCall;

private:
    void take(const QString& call);

    Calls& m_calls;
};

/// A manager of the test's own, apart from the module's one.
class TestManager : public ZR_AiChatManager {
public:
    using ZR_AiChatManager::sendInKnownSession;
};

/// A signed-in user, a service at the address that the test sets, and a host that records what is printed. No
/// object of the module exists yet.
class ChatTest : public testing::Test {
protected:
    ChatTest();
    ~ChatTest() override;

    static void setServiceAddress(const QString& address);
    static void signIn(const CString& token);
    static void signOut();

    /// Creates the two threads, as the module entry does.
    void makeThreads();
    void deleteThreads();
    /// Creates the threads and a manager.
    TestManager& makeManager();
    /// Waits until both threads are idle and all their signals have been handled.
    bool waitUntilIdle() const;

    /// Everything printed since the last call.
    QString takePrinted();
    static bool waitFor(const std::function<bool()>& condition);

    FakeArxHost m_host;
    Calls m_calls;
    std::unique_ptr<TestManager> m_manager;
};

/// Waiting ends as soon as the condition holds; the limit only bounds a failure, even under sanitizers.
constexpr int kWaitLimitMs = 30000;

/// UTF-8 literals as QStrings.
QStringList texts(std::initializer_list<const char*> utf8);
/// A record's messages as "0:question", "1:answer".
QStringList messagesOf(const ZR_AiChatSingleChatRecord& record);
/// The signals that a class declares itself, in order.
QStringList signalsOf(const QMetaObject& metaObject);
/// The ids of the sessions in order.
QStringList idsOf(const ZR_AiChatSessionList& sessions);
