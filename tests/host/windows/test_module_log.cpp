#include <windows.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include "host/core/ZR_ZentriText.h"
#include "tests/host/ModuleLoadFixture.h"

// The log next to the module file, in all kinds of folders and with all kinds of obstacles.

namespace {

const QByteArray kByteOrderMark("\xFF\xFE", 2);
const QString kStamp = QStringLiteral("\n\\[\\d{4}年\\d\\d月\\d\\d日  \\d\\d:\\d\\d:\\d\\d\\]\n");
constexpr int kSharingViolation = 32;
constexpr int kAccessDenied = 5;

/// A copy of the module in a folder of the test's own. It remains until the test runs again: a module that
/// has been loaded is in use until the process ends.
class ModuleCopy {
protected:
    ModuleCopy()
        : folder(QDir(QStringLiteral(MODULE_COPIES))
                     .filePath(
                         QString::fromLatin1(testing::UnitTest::GetInstance()->current_test_info()->name()) +
                         QStringLiteral("/朔禾 CAD 模块"))),
          moduleFile(folder.filePath(QStringLiteral("ZR_Zentri.arx"))),
          logFile(folder.filePath(QStringLiteral("ZR_ZentriLogs.txt"))) {
        SetFileAttributesW(toCString(QDir::toNativeSeparators(logFile)), FILE_ATTRIBUTE_NORMAL);
        folder.removeRecursively();
        folder.mkpath(QStringLiteral("."));
        QFile::copy(LoadedModule::builtFile(), moduleFile);
    }

    QDir folder;
    QString moduleFile;
    QString logFile;
};

class ModuleLog : private ModuleCopy, public ModuleLoad {
protected:
    ModuleLog() : ModuleLoad(QDir::toNativeSeparators(moduleFile)) {}

    void open() {
        ASSERT_TRUE(load());
        printedOnLoad = printed();
        ASSERT_TRUE(openPanel());
        program.host().clearPrinted();
    }

    /// Asks a question, which is logged, and answers it.
    void exchange(const QString& question) {
        const int request = askAndReceive(question);
        ASSERT_GE(request, 0);
        service->sendHead(request);
        service->sendBytes(request, "data:first\ndata:second\ndata:third\ndata:fourth\n\n");
        EXPECT_TRUE(LoadedModule::waitForAnswer());
        service->close(request);
        // Then a further question may be asked.
        EXPECT_TRUE(TestProgram::pumpUntil([] { return LoadedModule::isIdle(); }));
        TestProgram::settle();
    }

    void makeLog(const QByteArray& content) const {
        QFile file(logFile);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QByteArray bytes() const {
        QFile file(logFile);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// The content after the byte-order mark.
    QString text() const {
        const QByteArray content = bytes().mid(kByteOrderMark.size());
        return QString(reinterpret_cast<const QChar*>(content.constData()), content.size() / 2);
    }

    static QRegularExpression entry(const QString& question) {
        return QRegularExpression(kStamp + QStringLiteral("准备发送用户对话,内容如下:\n") + question +
                                  QStringLiteral("\n"));
    }

    QString printed() const { return toQString(program.host().printedText()); }

    static QString failure(int error) {
        return QStringLiteral("\nZR_Zentri Logger init failed : create log file failed.Error:%1").arg(error);
    }

    /// The system's error when this program opens the log file for writing; 0 when it succeeds.
    int errorOfWriting() const {
        const HANDLE file = CreateFileW(toCString(QDir::toNativeSeparators(logFile)), GENERIC_WRITE, 0,
                                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE) {
            return static_cast<int>(GetLastError());
        }
        CloseHandle(file);
        return 0;
    }

    /// Opens the log file for exclusive use, as another program would.
    HANDLE openExclusively() const {
        return CreateFileW(toCString(QDir::toNativeSeparators(logFile)), GENERIC_READ, 0, nullptr,
                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    }

    QString printedOnLoad;

    using ModuleCopy::folder;
    using ModuleCopy::logFile;
};

}  // namespace

TEST_F(ModuleLog, WorksInAFolderWithChineseCharactersAndBlanks) {
    open();
    exchange(QStringLiteral("怎样画圆"));
    EXPECT_TRUE(printed().isEmpty()) << printed().toStdString();
    EXPECT_TRUE(text().contains(entry(QStringLiteral("怎样画圆")))) << text().toStdString();
}

TEST_F(ModuleLog, IsLittleEndianWithOneMarkHoweverOftenTheModuleIsLoaded) {
    open();
    exchange(QStringLiteral("第一问"));
    ASSERT_TRUE(unload());
    open();
    exchange(QStringLiteral("第二问"));
    EXPECT_TRUE(bytes().startsWith(kByteOrderMark));
    EXPECT_EQ(bytes().size() % 2, 0);
    EXPECT_FALSE(text().contains(QChar(0xFEFF)));
    EXPECT_FALSE(text().contains(QChar(0)));
    EXPECT_TRUE(text().contains(entry(QStringLiteral("第一问")))) << text().toStdString();
    EXPECT_TRUE(text().contains(entry(QStringLiteral("第二问")))) << text().toStdString();
}

TEST_F(ModuleLog, AReadOnlyFileIsReportedAndTheModuleStaysUsable) {
    makeLog("old");
    ASSERT_TRUE(SetFileAttributesW(toCString(QDir::toNativeSeparators(logFile)), FILE_ATTRIBUTE_READONLY));
    // Wine lets root write to the file all the same.
    const int error = errorOfWriting();
    open();
    exchange(QStringLiteral("怎样画圆"));
    exchange(QStringLiteral("再问一次"));
    EXPECT_EQ(printedOnLoad, error == 0 ? QString() : failure(error));
    EXPECT_TRUE(printed().isEmpty()) << printed().toStdString();
    EXPECT_EQ(bytes() == QByteArray("old"), error != 0);
}

TEST_F(ModuleLog, AFolderWithItsNameIsReportedAndTheModuleStaysUsable) {
    ASSERT_TRUE(folder.mkdir(QStringLiteral("ZR_ZentriLogs.txt")));
    open();
    exchange(QStringLiteral("怎样画圆"));
    exchange(QStringLiteral("再问一次"));
    EXPECT_EQ(printedOnLoad, failure(kAccessDenied));
    EXPECT_TRUE(printed().isEmpty()) << printed().toStdString();
}

TEST_F(ModuleLog, AFileLockedByAnotherProgramIsReported) {
    makeLog("old");
    const HANDLE other = openExclusively();
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    open();
    exchange(QStringLiteral("怎样画圆"));
    EXPECT_EQ(printedOnLoad, failure(kSharingViolation));
    EXPECT_TRUE(printed().isEmpty()) << printed().toStdString();
    CloseHandle(other);
    EXPECT_EQ(bytes(), QByteArray("old"));
}

TEST_F(ModuleLog, EntriesAreLostSilentlyWhileAnotherProgramLocksTheFile) {
    open();
    exchange(QStringLiteral("第一问"));
    const HANDLE other = openExclusively();
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    exchange(QStringLiteral("第二问"));
    CloseHandle(other);
    exchange(QStringLiteral("第三问"));
    EXPECT_TRUE(printed().isEmpty()) << printed().toStdString();
    EXPECT_TRUE(text().contains(entry(QStringLiteral("第一问")))) << text().toStdString();
    EXPECT_FALSE(text().contains(QStringLiteral("第二问"))) << text().toStdString();
    EXPECT_TRUE(text().contains(entry(QStringLiteral("第三问")))) << text().toStdString();
}
