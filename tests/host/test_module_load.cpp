#include <aced.h>
#include <gtest/gtest.h>
#include <rxdlinkr.h>
#include <rxregsvc.h>

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QPointer>
#include <QTextEdit>
#include <QTimer>
#include <memory>

#include "tests/host/FakeAccount.h"
#include "tests/host/HostRecorder.h"
#include "tests/support/TestProgram.h"
#include "tests/support/http/FakeHttpServer.h"

// The module as it is shipped: only what a host can see of it.

namespace {

const QString kModule = QStringLiteral(MODULE_FILE);
constexpr const ACHAR* kModuleName = _T("ZR_Zentri.arx");

CString modulePath() {
    return CString(reinterpret_cast<const ACHAR*>(kModule.utf16()), kModule.size());
}

class ModuleLoad : public testing::Test {
protected:
    ModuleLoad() {
        FakeAccount::reset();
        FakeAccount::offer(program.host());
        FakeAccount::token = _T("token");
        program.host().setVar(_T("COLORTHEME"), 1);
    }
    ~ModuleLoad() override {
        arxUnloadAllModules();
        TestProgram::settle();
    }

    /// Loads the module, and with the first load, once there is Qt's application, starts the service.
    bool load() {
        if (!acrxLoadModule(modulePath(), true))
            return false;
        if (service == nullptr) {
            service = std::make_unique<FakeHttpServer>();
            service->answer("/zr/ai/session/user", R"({"code":200,"msg":"success","data":[]})");
            service->answer("/zr/ai/session/create", R"({"code":200,"msg":"success","data":"session-1"})");
            qputenv("ZR_ZENTRI_SERVICE", service->address().toLatin1());
            qputenv("ZR_ZENTRI_PROBE", "http://" + service->address().toLatin1());
        }
        return true;
    }
    static bool unload() { return acrxUnloadModule(kModuleName); }

    static bool run(const ACHAR* command) {
        AcEdCommand* const found = acedRegCmds->lookupCmd(command, false);
        if (found == nullptr)
            return false;
        found->functionAddr()();
        return true;
    }

    bool openPanel() {
        program.host().clearPrinted();
        return run(_T("KQ_AICHAT")) && TestProgram::pumpUntil([this] {
                   return program.host().printedText().Find(_T("\nZentri:用户数据初始化完成")) >= 0;
               });
    }

    static QWidget* view() {
        for (QWidget* widget : QApplication::allWidgets()) {
            if (widget->objectName() == QStringLiteral("ZR_ZentriPaletteViewClass"))
                return widget;
        }
        return nullptr;
    }

    int bars() const { return static_cast<int>(program.frame()->GetControlBars().size()); }

    std::unique_ptr<FakeHttpServer> service;
    TestProgram program;
};

}  // namespace

TEST_F(ModuleLoad, LoadsQuietlyAndUnlocked) {
    ASSERT_TRUE(load());
    EXPECT_TRUE(acrxAppIsLoaded(kModuleName));
    EXPECT_FALSE(acrxDynamicLinker->isApplicationLocked(kModuleName));
    EXPECT_TRUE(acrxDynamicLinker->isAppMDIAware(kModuleName));
    EXPECT_TRUE(program.host().printed().empty());
    EXPECT_EQ(bars(), 1);
    EXPECT_EQ(arxEditorReactorCount(), 2);
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

TEST_F(ModuleLoad, EveryOtherMessageOfTheHostSucceeds) {
    ASSERT_TRUE(load());
    using EntryPoint = AcRx::AppRetCode (*)(AcRx::AppMsgCode, void*);
    const auto entryPoint = reinterpret_cast<EntryPoint>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(kModuleName), "acrxEntryPoint")));
    ASSERT_NE(entryPoint, nullptr);
    for (int message = AcRx::kLoadDwgMsg; message <= AcRx::kEndTabGroupMsg; ++message)
        EXPECT_EQ(entryPoint(static_cast<AcRx::AppMsgCode>(message), nullptr), AcRx::kRetOK) << message;
    EXPECT_EQ(bars(), 1);
    EXPECT_EQ(arxEditorReactorCount(), 2);
}

TEST_F(ModuleLoad, ItSpeaksTheHostsRelease) {
    ASSERT_TRUE(load());
    using ApiVersion = DWORD (*)();
    const auto apiVersion = reinterpret_cast<ApiVersion>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(kModuleName), "acrxGetApiVersion")));
    ASSERT_NE(apiVersion, nullptr);
    EXPECT_EQ(HIWORD(apiVersion()), 23);
}

TEST_F(ModuleLoad, ItsResourcesAreTheCurrentOnesWhileItIsInitialised) {
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
    EXPECT_EQ(bars(), 1);
    EXPECT_EQ(arxEditorReactorCount(), 2);
}

TEST_F(ModuleLoad, KeepsTheKeyboardFocusInTheHost) {
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
    EXPECT_EQ(bars(), 0);
    EXPECT_EQ(arxEditorReactorCount(), 0);
    EXPECT_EQ(acedRegCmds->lookupCmd(_T("KQ_AICHAT"), false), nullptr);
    EXPECT_EQ(view(), nullptr);
    // The Qt application stays, and so does its code: Qt goes on calling it.
    ASSERT_NE(QCoreApplication::instance(), nullptr);
    QPointer<QObject> object = new QObject;
    QTimer::singleShot(0, object, [&object] { object->deleteLater(); });
    EXPECT_TRUE(TestProgram::pumpUntil([&object] { return object.isNull(); }));
}

TEST_F(ModuleLoad, LoadsUnloadsAndLoadsAgainSeveralTimes) {
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(load()) << round;
        ASSERT_TRUE(openPanel()) << round;
        EXPECT_EQ(bars(), 1);
        EXPECT_EQ(arxEditorReactorCount(), 2);
        ASSERT_NE(view(), nullptr);
        EXPECT_TRUE(view()->isVisible());
        ASSERT_TRUE(unload()) << round;
        EXPECT_EQ(bars(), 0);
        EXPECT_EQ(arxEditorReactorCount(), 0);
    }
    EXPECT_EQ(FakeAccount::tokenCalls, 3);
}

TEST_F(ModuleLoad, UnloadingWhileAnAnswerStreamsIsQuickAndTheNextLoadWorks) {
    ASSERT_TRUE(load());
    ASSERT_TRUE(openPanel());
    const int before = service->requestCount();
    view()
        ->findChild<QTextEdit*>(QStringLiteral("textEdit_userInput"))
        ->setPlainText(QStringLiteral("怎样画圆"));
    view()->findChild<QAbstractButton*>(QStringLiteral("toolButton_Send"))->click();
    ASSERT_TRUE(TestProgram::pumpUntil([&] { return service->requestCount() == before + 2; }));
    service->sendHead(before + 1);
    service->sendBytes(before + 1, "data:first\n\n");
    TestProgram::settle();

    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(unload());
    EXPECT_LT(clock.elapsed(), 5000);
    EXPECT_TRUE(TestProgram::pumpUntil([&] { return service->isClosed(before + 1); }));
    TestProgram::settle();

    ASSERT_TRUE(load());
    ASSERT_TRUE(openPanel());
    // A question can be asked as if nothing had happened.
    const int again = service->requestCount();
    view()
        ->findChild<QTextEdit*>(QStringLiteral("textEdit_userInput"))
        ->setPlainText(QStringLiteral("再问一次"));
    view()->findChild<QAbstractButton*>(QStringLiteral("toolButton_Send"))->click();
    ASSERT_TRUE(TestProgram::pumpUntil([&] { return service->requestCount() == again + 2; }));
    EXPECT_EQ(service->request(again + 1).target, QByteArray("/zr/ai/caddraw/chat"));
}

TEST_F(ModuleLoad, ItsLogStandsBesideIt) {
    const QString log = QFileInfo(kModule).absolutePath() + QStringLiteral("/ZR_ZentriLogs.txt");
    const qint64 before = QFileInfo(log).size();
    ASSERT_TRUE(load());
    ASSERT_TRUE(openPanel());
    const int requests = service->requestCount();
    view()
        ->findChild<QTextEdit*>(QStringLiteral("textEdit_userInput"))
        ->setPlainText(QStringLiteral("记入日志"));
    view()->findChild<QAbstractButton*>(QStringLiteral("toolButton_Send"))->click();
    ASSERT_TRUE(TestProgram::pumpUntil([&] { return service->requestCount() == requests + 2; }));
    EXPECT_GT(QFileInfo(log).size(), before);
}
