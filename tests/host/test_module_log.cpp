#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "host/core/ZR_ZentriText.h"
#include "tests/host/ModuleLoadFixture.h"

// The log of the module as it is shipped.

namespace {

/// A copy of the module in a folder of the test's own.
class ModuleCopy {
protected:
    ModuleCopy()
        : moduleFile(folder.filePath(QStringLiteral("ZR_Zentri.arx"))),
          logFile(folder.filePath(QStringLiteral("ZR_ZentriLogs.txt"))) {
        QFile::copy(LoadedModule::builtFile(), moduleFile);
    }

    QTemporaryDir folder;
    QString moduleFile;
    QString logFile;
};

class ModuleLog : private ModuleCopy, public ModuleLoad {
protected:
    ModuleLog() : ModuleLoad(moduleFile) {}

    QString printed() const { return toQString(program.host().printedText()); }

    using ModuleCopy::logFile;
};

const QRegularExpression kFailure(
    QStringLiteral("^\nZR_Zentri Logger init failed : create log file failed.Error:[1-9]\\d*$"));

}  // namespace

TEST_F(ModuleLog, StandsBesideTheModuleAsSoonAsItIsLoaded) {
    ASSERT_FALSE(QFile::exists(logFile));
    ASSERT_TRUE(load());
    EXPECT_TRUE(QFile::exists(logFile));
    EXPECT_TRUE(printed().isEmpty()) << printed().toStdString();
}

TEST_F(ModuleLog, AFolderInItsPlaceIsReportedWhenTheModuleIsLoadedAndNotByAWorker) {
    ASSERT_TRUE(QDir().mkdir(logFile));
    ASSERT_TRUE(load());
    EXPECT_TRUE(kFailure.match(printed()).hasMatch()) << printed().toStdString();
    // The history reader logs the refusal.
    service->answer("/zr/ai/session/user", R"({"code":401,"msg":"refused","data":null})");
    ASSERT_TRUE(openPanel());
    EXPECT_FALSE(printed().contains(QStringLiteral("Logger init failed"))) << printed().toStdString();
}
