#include <gtest/gtest.h>

#include <QByteArray>
#include <thread>

#include "chat/ZR_AiChatViewInterface.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriCmdRecorder.h"
#include "host/core/ZR_ZentriColorTheme.h"
#include "host/core/ZR_ZentriModalScope.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "host/core/ZR_ZentriServiceAddress.h"
#include "host/core/ZR_ZentriText.h"
#include "host/core/ZR_ZentriWideText.h"
#include "tests/support/FakeArxHost.h"

TEST(Account, HasAccessOnlyWhenSignedInWithAToken) {
    EXPECT_FALSE(zentriHasAccess());
    setZentriSignedIn(true);
    EXPECT_TRUE(zentriSignedIn());
    EXPECT_FALSE(zentriHasAccess());
    setZentriAccessToken(_T("token"));
    EXPECT_TRUE(zentriHasAccess());
    EXPECT_TRUE(zentriAccessToken() == _T("token"));
    setZentriSignedIn(false);
    EXPECT_FALSE(zentriHasAccess());
}

TEST(Account, MayBeResetWhileAThreadReads) {
    setZentriSignedIn(true);
    std::thread reader([] {
        for (int i = 0; i < 10000; ++i) {
            const CString token = zentriAccessToken();
            EXPECT_TRUE(token.IsEmpty() || token == _T("a token"));
        }
    });
    for (int i = 0; i < 10000; ++i) {
        setZentriAccessToken(i % 2 == 0 ? CString(_T("a token")) : CString());
    }
    reader.join();
}

TEST(CmdRecorder, RemembersTheLastCommandThatStarted) {
    ZR_ZentriCmdRecorder recorder;
    EXPECT_TRUE(recorder.lastCommandName().IsEmpty());
    recorder.commandWillStart(_T("LINE"));
    recorder.commandWillStart(_T("CIRCLE"));
    recorder.commandEnded(_T("ZOOM"));
    EXPECT_TRUE(recorder.lastCommandName() == _T("CIRCLE"));
}

TEST(ColorTheme, IsTheValueOfTheHostsVariable) {
    FakeArxHost host;
    host.setVar(_T("COLORTHEME"), 1);
    EXPECT_EQ(readColorTheme(), 1);
    host.setVar(_T("COLORTHEME"), 0);
    EXPECT_EQ(readColorTheme(), 0);
}

TEST(ColorTheme, PassesAnUnknownValueThroughUnchanged) {
    FakeArxHost host;
    host.setVar(_T("COLORTHEME"), 7);
    EXPECT_EQ(readColorTheme(), 7);
    host.setVar(_T("COLORTHEME"), -3);
    EXPECT_EQ(readColorTheme(), -3);
}

TEST(ColorTheme, IsDarkInAHostWithoutTheVariable) {
    const FakeArxHost host;
    EXPECT_EQ(readColorTheme(), 0);
}

TEST(ServiceAddress, EnvironmentOverridesTheBuildOption) {
    qunsetenv("ZR_ZENTRI_SERVICE");
    qunsetenv("ZR_ZENTRI_PROBE");
    const QString service = zentriServiceAddress();
    const QString probe = zentriProbeAddress();
    EXPECT_FALSE(service.isEmpty());
    EXPECT_FALSE(probe.isEmpty());
    qputenv("ZR_ZENTRI_SERVICE", "127.0.0.1:4242");
    qputenv("ZR_ZENTRI_PROBE", "http://127.0.0.1:4243");
    EXPECT_EQ(zentriServiceAddress(), QStringLiteral("127.0.0.1:4242"));
    EXPECT_EQ(zentriProbeAddress(), QStringLiteral("http://127.0.0.1:4243"));
    qputenv("ZR_ZENTRI_SERVICE", "");
    qputenv("ZR_ZENTRI_PROBE", "");
    EXPECT_EQ(zentriServiceAddress(), service);
    EXPECT_EQ(zentriProbeAddress(), probe);
}

TEST(ModalScope, CountsNestedBoxes) {
    EXPECT_FALSE(ZR_ZentriModalScope::anyOpen());
    {
        const ZR_ZentriModalScope outer;
        { const ZR_ZentriModalScope inner; }
        EXPECT_TRUE(ZR_ZentriModalScope::anyOpen());
    }
    EXPECT_FALSE(ZR_ZentriModalScope::anyOpen());
}

namespace {

class Palette : public ZR_ZentriPaletteAccess {
public:
    ZR_AiChatViewInterface* chatView() override { return nullptr; }
    void setColorTheme(int) override {}
    void takeKeyboardFocus() override {}
};

}  // namespace

TEST(PaletteAccess, ThereIsNoViewWithoutAPalette) {
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
    EXPECT_EQ(zentriChatView(), nullptr);
}

TEST(PaletteAccess, ReturnsTheRegisteredPalette) {
    Palette palette;
    setZentriPaletteAccess(&palette);
    EXPECT_EQ(zentriPaletteAccess(), &palette);
    EXPECT_EQ(zentriChatView(), nullptr);
    setZentriPaletteAccess(nullptr);
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
}

TEST(Text, CopiesUnitsBothWays) {
    const QString text = QStringLiteral("命令 LINE \U0001F600");
    const CString wide = toCString(text);
    EXPECT_EQ(wide.GetLength(), text.size());
    EXPECT_EQ(toQString(wide), text);
    EXPECT_TRUE(toQString(CString()).isEmpty());
    // An unpaired surrogate is invalid text, but must be preserved.
    const QString broken(QChar(0xD83D));
    EXPECT_EQ(toQString(toCString(broken)), broken);
}

TEST(WideText, IsComparedAndSearchedAfterAnEmbeddedNull) {
    const CString text(_T("画圆\0CIRCLE"), 9);
    EXPECT_TRUE(sameText(text, CString(_T("画圆\0CIRCLE"), 9)));
    EXPECT_FALSE(sameText(text, CString(_T("画圆\0CIRCLF"), 9)));
    EXPECT_FALSE(sameText(text, _T("画圆")));
    EXPECT_TRUE(sameText(CString(), _T("")));
    EXPECT_TRUE(containsText(text, _T("RCL")));
    EXPECT_FALSE(containsText(text, _T("rcl")));
    EXPECT_TRUE(containsText(text, CString(_T("\0C"), 2)));
    EXPECT_FALSE(containsText(text, CString(_T("\0X"), 2)));
    EXPECT_TRUE(containsText(text, CString()));
    EXPECT_TRUE(containsText(CString(), CString()));
}

TEST(WideText, EndsAtItsFirstNullForTheHost) {
    EXPECT_EQ(toQString(terminatedText(CString(_T("画圆\0CIRCLE"), 9))), QStringLiteral("画圆"));
    EXPECT_EQ(toQString(terminatedText(_T("LINE"))), QStringLiteral("LINE"));
    EXPECT_TRUE(terminatedText(CString(_T("\0LINE"), 5)).IsEmpty());
}

TEST(Text, KeepsByteOrderMarksLikeAnyOtherUnit) {
    for (const ushort mark : {ushort{0xFEFF}, ushort{0xFFFE}}) {
        const QString leading = QChar(mark) + QStringLiteral("命令 LINE");
        EXPECT_EQ(toQString(toCString(leading)), leading) << mark;
        const QString within = QStringLiteral("命令") + QChar(mark) + QStringLiteral("LINE");
        EXPECT_EQ(toQString(toCString(within)), within) << mark;
    }
}
