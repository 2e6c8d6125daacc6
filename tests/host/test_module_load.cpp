#include <aced.h>
#include <gtest/gtest.h>
#include <rxdlinkr.h>
#include <rxregsvc.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include "tests/host/FakeAccount.h"
#include "tests/host/HostRecorder.h"
#include "tests/host/ModuleLoadFixture.h"

// The module as it is shipped, seen from a host.

namespace {

const QString kModule = LoadedModule::builtFile();
const ACHAR* const kModuleName = LoadedModule::name();

}  // namespace

TEST_F(ModuleLoad, LoadsUnlockedAndPrintsNothing) {
    ASSERT_TRUE(load());
    EXPECT_TRUE(acrxAppIsLoaded(kModuleName));
    EXPECT_FALSE(acrxDynamicLinker->isApplicationLocked(kModuleName));
    EXPECT_TRUE(acrxDynamicLinker->isAppMDIAware(kModuleName));
    EXPECT_TRUE(program.host().printed().empty());
    EXPECT_EQ(module.bars(), 1);
    EXPECT_EQ(arxEditorReactorCount(), 2);
}

TEST_F(ModuleLoad, IsRefusedWhereQtHasNoWidgetsAndLeavesNothing) {
    int count = 0;
    const QCoreApplication application(count, nullptr);
    EXPECT_FALSE(load());
    EXPECT_FALSE(acrxAppIsLoaded(kModuleName));
    EXPECT_EQ(program.host().printedText().Find(_T("\nZR_Zentri:Load failed")), 0);
    EXPECT_EQ(module.bars(), 0);
    EXPECT_EQ(arxEditorReactorCount(), 0);
    EXPECT_EQ(acedRegCmds->lookupCmd(_T("KQ_AICHAT"), false), nullptr);
}

TEST_F(ModuleLoad, ItsFontBecomesTheApplicationsFont) {
    ASSERT_TRUE(load());
    EXPECT_LT(program.host().printedText().Find(_T("Load font failed")), 0);
    const QString file = QStringLiteral(":/res/font/SourceHanSansCN-Regular.ttf");
    ASSERT_TRUE(QFile::exists(file));
    const QStringList families =
        QFontDatabase::applicationFontFamilies(QFontDatabase::addApplicationFont(file));
    ASSERT_FALSE(families.isEmpty());
    // Its size and weight are the defaults.
    EXPECT_EQ(QApplication::font(), QFont(families.first()));
}

TEST_F(ModuleLoad, ItsFontIsAddedOnceHoweverOftenItIsLoaded) {
    const QString file = QStringLiteral(":/res/font/SourceHanSansCN-Regular.ttf");
    ASSERT_TRUE(load());
    // Qt gives a font the lowest free id.
    const int next = QFontDatabase::addApplicationFont(file);
    ASSERT_TRUE(QFontDatabase::removeApplicationFont(next));
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(unload());
        ASSERT_TRUE(load());
    }
    EXPECT_EQ(QFontDatabase::addApplicationFont(file), next);

    ASSERT_TRUE(unload());
    QFontDatabase::removeAllApplicationFonts();
    ASSERT_TRUE(load());
    EXPECT_FALSE(QFontDatabase::applicationFontFamilies(0).isEmpty());
    EXPECT_LT(program.host().printedText().Find(_T("Load font failed")), 0);
}

TEST_F(ModuleLoad, OtherMessagesOfTheHostSucceed) {
    ASSERT_TRUE(load());
    using EntryPoint = AcRx::AppRetCode (*)(AcRx::AppMsgCode, void*);
    const auto entryPoint = reinterpret_cast<EntryPoint>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(kModuleName), "acrxEntryPoint")));
    ASSERT_NE(entryPoint, nullptr);
    for (int message = AcRx::kLoadDwgMsg; message <= AcRx::kEndTabGroupMsg; ++message) {
        EXPECT_EQ(entryPoint(static_cast<AcRx::AppMsgCode>(message), nullptr), AcRx::kRetOK) << message;
    }
    EXPECT_EQ(module.bars(), 1);
    EXPECT_EQ(arxEditorReactorCount(), 2);
}

TEST_F(ModuleLoad, ItReportsTheHostsApiVersion) {
    ASSERT_TRUE(load());
    using ApiVersion = DWORD (*)();
    const auto apiVersion = reinterpret_cast<ApiVersion>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(kModuleName), "acrxGetApiVersion")));
    ASSERT_NE(apiVersion, nullptr);
    EXPECT_EQ(HIWORD(apiVersion()), 23);
}

TEST_F(ModuleLoad, ItsResourceHandleIsTheCurrentOneDuringInitialisation) {
    const HINSTANCE before = AfxGetResourceHandle();
    HINSTANCE meanwhile = nullptr;
    {
        HostRecorder recorder;
        recorder.onCall = [&meanwhile](const QString&) { meanwhile = AfxGetResourceHandle(); };
        ASSERT_TRUE(load());
    }
    EXPECT_EQ(meanwhile, GetModuleHandleW(kModuleName));
    EXPECT_EQ(AfxGetResourceHandle(), before);
}

TEST_F(ModuleLoad, ASecondLoadIsRefused) {
    ASSERT_TRUE(load());
    EXPECT_FALSE(load());
    EXPECT_EQ(module.bars(), 1);
    EXPECT_EQ(arxEditorReactorCount(), 2);
}

TEST_F(ModuleLoad, LeavesTheKeyboardFocusInTheHost) {
    program.frame()->SetFocus();
    ASSERT_TRUE(load());
    TestProgram::settle();
    EXPECT_EQ(GetFocus(), program.frame()->m_hWnd);
}

TEST_F(ModuleLoad, UnloadingLeavesNothingInTheHost) {
    ASSERT_TRUE(load());
    ASSERT_TRUE(openPanel());
    EXPECT_TRUE(unload());
    EXPECT_FALSE(acrxAppIsLoaded(kModuleName));
    EXPECT_EQ(module.bars(), 0);
    EXPECT_EQ(arxEditorReactorCount(), 0);
    EXPECT_EQ(acedRegCmds->lookupCmd(_T("KQ_AICHAT"), false), nullptr);
    EXPECT_EQ(LoadedModule::view(), nullptr);
    // The Qt application and its code stay: Qt still calls it.
    ASSERT_NE(QCoreApplication::instance(), nullptr);
    QPointer<QObject> object = new QObject;
    QTimer::singleShot(0, object, [&object] { object->deleteLater(); });
    EXPECT_TRUE(TestProgram::pumpUntil([&object] { return object.isNull(); }));
}

TEST_F(ModuleLoad, CanBeReloadedSeveralTimes) {
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(load()) << round;
        ASSERT_TRUE(openPanel()) << round;
        EXPECT_EQ(module.bars(), 1);
        EXPECT_EQ(arxEditorReactorCount(), 2);
        ASSERT_NE(LoadedModule::view(), nullptr);
        EXPECT_TRUE(LoadedModule::view()->isVisible());
        ASSERT_TRUE(unload()) << round;
        EXPECT_EQ(module.bars(), 0);
        EXPECT_EQ(arxEditorReactorCount(), 0);
    }
    EXPECT_EQ(FakeAccount::tokenCalls, 3);
}

TEST_F(ModuleLoad, UnloadsQuicklyWhileAnAnswerStreamsAndReloads) {
    ASSERT_TRUE(load());
    ASSERT_TRUE(openPanel());
    const int stream = askAndReceive(QStringLiteral("怎样画圆"));
    ASSERT_GE(stream, 0);
    service->sendHead(stream);
    service->sendBytes(stream, "data:first\n\n");
    TestProgram::settle();

    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(unload());
    EXPECT_LT(clock.elapsed(), 5000);
    EXPECT_TRUE(TestProgram::pumpUntil([&] { return service->isClosed(stream); }));
    TestProgram::settle();

    ASSERT_TRUE(load());
    ASSERT_TRUE(openPanel());
    // Questions can be asked as before.
    EXPECT_GE(askAndReceive(QStringLiteral("再问一次")), 0);
}

TEST_F(ModuleLoad, ItsLogIsNextToItsFile) {
    const QString log = QFileInfo(kModule).absolutePath() + QStringLiteral("/ZR_ZentriLogs.txt");
    const qint64 before = QFileInfo(log).size();
    ASSERT_TRUE(load());
    ASSERT_TRUE(openPanel());
    ASSERT_GE(askAndReceive(QStringLiteral("记入日志")), 0);
    EXPECT_GT(QFileInfo(log).size(), before);
}
