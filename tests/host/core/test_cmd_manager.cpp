#include <gtest/gtest.h>
#include <win32_control.h>

#include <memory>

#include "host/core/ZR_ZentriCmdManager.h"
#include "host/core/ZR_ZentriCmdRecorder.h"
#include "host/core/ZR_ZentriModalScope.h"
#include "tests/support/FakeArxHost.h"
#include "tests/support/MessageBoxAnswer.h"

namespace {

class CmdManager : public testing::Test {
protected:
    CmdManager() { g_zentriCmdRecorder = &recorder; }
    ~CmdManager() override { g_zentriCmdRecorder = nullptr; }

    CString sentText() const {
        CString text;
        for (const FakeArxHost::SentString& sent : host.sent()) {
            text += sent.text;
        }
        return text;
    }

    FakeArxHost host;
    ZR_ZentriCmdRecorder recorder;
    ZR_ZentriCmdManager& manager = ZR_ZentriCmdManager::instance();
};

}  // namespace

TEST_F(CmdManager, RunsAtOnceWhenNoCommandIsInProgress) {
    MessageBoxAnswer box(IDNO);
    manager.runCommand(_T("CIRCLE"));
    EXPECT_EQ(box.count(), 0);
    ASSERT_EQ(host.sent().size(), 1U);
    EXPECT_EQ(host.sent()[0].document, host.document());
    EXPECT_TRUE(host.sent()[0].text == _T("CIRCLE\n"));
    EXPECT_TRUE(host.sent()[0].activate);
    EXPECT_FALSE(host.sent()[0].wrapUpInactiveDocument);
    EXPECT_TRUE(host.sent()[0].echo);
    EXPECT_EQ(manager.lastRunCommand(), QStringLiteral("CIRCLE"));
}

TEST_F(CmdManager, NoDropsTheRequest) {
    manager.runCommand(_T("LINE"));
    host.clearSent();
    host.document()->quiescent = false;
    MessageBoxAnswer box(IDNO);
    manager.runCommand(_T("CIRCLE"));
    EXPECT_EQ(box.count(), 1);
    EXPECT_TRUE(host.sent().empty());
    EXPECT_EQ(manager.lastRunCommand(), QStringLiteral("LINE"));
}

TEST_F(CmdManager, YesCancelsTheRunningCommandFirst) {
    host.document()->quiescent = false;
    MessageBoxAnswer box(IDYES);
    manager.runCommand(_T("CIRCLE"));
    EXPECT_EQ(box.count(), 1);
    ASSERT_EQ(host.sent().size(), 2U);
    EXPECT_TRUE(host.sent()[0].text == _T("\x03\x03"));
    EXPECT_TRUE(host.sent()[1].text == _T("CIRCLE\n"));
    for (const FakeArxHost::SentString& sent : host.sent()) {
        EXPECT_TRUE(sent.activate);
        EXPECT_FALSE(sent.wrapUpInactiveDocument);
        EXPECT_TRUE(sent.echo);
    }
    EXPECT_EQ(manager.lastRunCommand(), QStringLiteral("CIRCLE"));
}

TEST_F(CmdManager, TheQuestionNamesTheCommandThatStartedLast) {
    recorder.commandWillStart(_T("LINE"));
    recorder.commandWillStart(_T("RECTANG"));
    host.document()->quiescent = false;
    MessageBoxAnswer box(IDNO);
    manager.runCommand(_T("CIRCLE"));
    EXPECT_TRUE(box.text() == _T("当前有未结束的【RECTANG】命令，是否取消当前命令并执行【CIRCLE】命令？"));
    EXPECT_TRUE(box.caption() == _T("命令执行"));
    EXPECT_EQ(box.type(), static_cast<UINT>(MB_YESNO | MB_ICONWARNING));
}

TEST_F(CmdManager, AsksTheQuestionWithoutARecorderToo) {
    g_zentriCmdRecorder = nullptr;
    host.document()->quiescent = false;
    MessageBoxAnswer box(IDYES);
    manager.runCommand(_T("CIRCLE"));
    EXPECT_TRUE(box.text() == _T("当前有未结束的【】命令，是否取消当前命令并执行【CIRCLE】命令？"));
    EXPECT_EQ(host.sent().size(), 2U);
}

TEST_F(CmdManager, RunsNothingWithoutADocument) {
    host.setDocument(nullptr);
    manager.runCommand(_T("CIRCLE"));
    EXPECT_TRUE(host.sent().empty());
}

TEST_F(CmdManager, DoesNotUseADocumentClosedDuringTheQuestion) {
    host.document()->quiescent = false;
    MessageBoxAnswer box(IDYES, [this] { host.setDocument(nullptr); });
    manager.runCommand(_T("CIRCLE"));
    EXPECT_EQ(box.count(), 1);
    EXPECT_TRUE(host.sent().empty());
}

TEST_F(CmdManager, UsesTheDocumentThatTheQuestionIsAboutAfterTheUserHasSwitchedToAnother) {
    FakeArxDocument* const asked = host.document();
    asked->quiescent = false;
    MessageBoxAnswer box(IDYES, [this] { host.switchToDocument(std::make_unique<FakeArxDocument>()); });
    manager.runCommand(_T("CIRCLE"));
    ASSERT_NE(host.document(), asked);
    ASSERT_EQ(host.sent().size(), 2U);
    EXPECT_EQ(host.sent()[0].document, asked);
    EXPECT_TRUE(host.sent()[0].text == _T("\x03\x03"));
    EXPECT_EQ(host.sent()[1].document, asked);
    EXPECT_TRUE(host.sent()[1].text == _T("CIRCLE\n"));
    EXPECT_EQ(manager.lastRunCommand(), QStringLiteral("CIRCLE"));
}

TEST_F(CmdManager, LeavesOtherDocumentsAloneWhenTheOneAskedAboutHasBeenClosed) {
    manager.runCommand(_T("LINE"));
    host.clearSent();
    for (const bool currentAtFirst : {true, false}) {
        host.document()->quiescent = false;
        MessageBoxAnswer box(IDYES, [&] {
            if (currentAtFirst) {
                host.setDocument(std::make_unique<FakeArxDocument>());
            } else {
                host.switchToDocument(std::make_unique<FakeArxDocument>());
                host.closeFormerDocument();
            }
            // The new one is in a command too.
            host.document()->quiescent = false;
        });
        manager.runCommand(_T("CIRCLE"));
        EXPECT_EQ(box.count(), 1);
        EXPECT_TRUE(host.sent().empty()) << currentAtFirst;
        EXPECT_EQ(manager.lastRunCommand(), QStringLiteral("LINE"));
    }
}

TEST_F(CmdManager, ADocumentAtTheAddressOfTheClosedOneIsAnother) {
    FakeArxDocument* const asked = host.document();
    asked->quiescent = false;
    // The host announces that the document is closed, and the next one gets its address.
    MessageBoxAnswer box(IDYES, [asked] { arxFireDocumentToBeDestroyed(asked); });
    manager.runCommand(_T("CIRCLE"));
    EXPECT_TRUE(host.sent().empty());
}

TEST_F(CmdManager, TheQuestionHasNoOwnerAndIsAModalScope) {
    host.document()->quiescent = false;
    bool asked = false;
    MessageBoxAnswer box(IDNO, [&asked] {
        asked = true;
        EXPECT_EQ(GetWindow(win32MessageBoxes().back().window, GW_OWNER), nullptr);
        EXPECT_TRUE(ZR_ZentriModalScope::anyOpen());
    });
    manager.runCommand(_T("CIRCLE"));
    EXPECT_TRUE(asked);
    EXPECT_FALSE(ZR_ZentriModalScope::anyOpen());
}

TEST_F(CmdManager, HasOneInstance) {
    EXPECT_EQ(&ZR_ZentriCmdManager::instance(), &manager);
    EXPECT_TRUE(manager.lastRunCommand().isEmpty());
}

TEST_F(CmdManager, RunsACommandWithAnEmbeddedNullUpToThere) {
    const CString command(_T("CIRCLE\0 0,0"), 11);
    manager.runCommand(command);
    EXPECT_TRUE(sentText() == _T("CIRCLE\n"));
    EXPECT_EQ(manager.lastRunCommand(), QStringLiteral("CIRCLE"));
    host.clearSent();
    host.document()->quiescent = false;
    MessageBoxAnswer box(IDYES);
    manager.runCommand(command);
    EXPECT_TRUE(box.text() == _T("当前有未结束的【】命令，是否取消当前命令并执行【CIRCLE】命令？"));
    EXPECT_TRUE(sentText() ==
                _T("\x03\x03")
                _T("CIRCLE\n"));
}

TEST_F(CmdManager, SendsTheTextUnchanged) {
    manager.runCommand(_T("-图层 %s"));
    EXPECT_TRUE(sentText() == _T("-图层 %s\n"));
}
