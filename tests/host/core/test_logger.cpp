#include <gtest/gtest.h>
#include <time.h>
#include <windows.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <thread>
#include <vector>

#include "host/core/ZR_ZentriLogger.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/host/core/FullDisk.h"
#include "tests/support/FakeArxHost.h"

namespace {

const QByteArray kByteOrderMark("\xFF\xFE", 2);

/// A folder with a stand-in for the module file, which is loaded while the test runs.
class Logger : public testing::Test {
protected:
    void loadModule() {
        const QString file = folder.filePath(QStringLiteral("ZR_Zentri.arx"));
        ASSERT_TRUE(QFile::copy(QStringLiteral(MODULE_ANCHOR), file));
        m_module = LoadLibraryW(toCString(file));
        ASSERT_NE(m_module, nullptr);
    }

    ~Logger() override {
        if (m_module != nullptr) {
            FreeLibrary(m_module);
        }
    }

    QString logFile() const { return folder.filePath(QStringLiteral("ZR_ZentriLogs.txt")); }

    QByteArray bytes() const {
        QFile file(logFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// The content after the byte-order mark.
    QString text() const {
        const QByteArray content = bytes().mid(kByteOrderMark.size());
        QString result;
        for (int i = 0; i + 1 < content.size(); i += 2) {
            result += QChar(static_cast<ushort>(static_cast<uchar>(content[i]) |
                                                (static_cast<uchar>(content[i + 1]) << 8)));
        }
        return result;
    }

    QTemporaryDir folder;
    FakeArxHost host;

private:
    HMODULE m_module = nullptr;
};

/// A host whose command line writes to the log while it prints.
class LoggingHost : public FakeArxHost {
public:
    void print(const CString& text) override {
        FakeArxHost::print(text);
        zentriLog(text);
    }
};

const QString kStamp = QStringLiteral("\n\\[\\d{4}年\\d\\d月\\d\\d日  \\d\\d:\\d\\d:\\d\\d\\]\n");

}  // namespace

TEST_F(Logger, IsNextToTheModuleFile) {
    loadModule();
    ZR_ZentriLogger logger;
    logger.init();
    EXPECT_TRUE(logger.isValid());
    const QString path = toQString(logger.path());
    EXPECT_TRUE(path.endsWith(QStringLiteral("\\ZR_ZentriLogs.txt"))) << path.toStdString();
    EXPECT_EQ(bytes(), kByteOrderMark);
    EXPECT_TRUE(host.printedText().IsEmpty());
}

TEST_F(Logger, EntryIsAnEmptyLineAStampAndTheMessage) {
    loadModule();
    ZR_ZentriLogger logger;
    logger.init();
    ASSERT_TRUE(logger.write(_T("网络请求出错！")));
    const QRegularExpression entry(QStringLiteral("^") + kStamp + QStringLiteral("网络请求出错！\n$"));
    EXPECT_TRUE(entry.match(text()).hasMatch()) << text().toStdString();
    EXPECT_TRUE(bytes().startsWith(kByteOrderMark));
    // Two bytes per character and no terminator.
    EXPECT_EQ(bytes().size(), 2 + 2 * text().size());
    EXPECT_FALSE(text().contains(QChar(0)));
}

TEST_F(Logger, TheStampIsTheLocalTimeOfTheEntry) {
    qputenv("TZ", "XYZ-08:30");
    tzset();
    loadModule();
    ZR_ZentriLogger logger;
    logger.init();
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    ASSERT_TRUE(logger.write(_T("now")));
    const qint64 after = QDateTime::currentSecsSinceEpoch();
    const QString format = QStringLiteral("'['yyyy'年'MM'月'dd'日  'HH:mm:ss']'");
    QDateTime stamp = QDateTime::fromString(text().section(QLatin1Char('\n'), 1, 1), format);
    ASSERT_TRUE(stamp.isValid()) << text().toStdString();
    stamp.setOffsetFromUtc((8 * 60 + 30) * 60);
    EXPECT_GE(stamp.toSecsSinceEpoch(), before);
    EXPECT_LE(stamp.toSecsSinceEpoch(), after);
}

TEST_F(Logger, EntriesAreAppended) {
    loadModule();
    ZR_ZentriLogger logger;
    logger.init();
    ASSERT_TRUE(logger.write(_T("first")));
    ASSERT_TRUE(logger.write(_T("second")));
    const QRegularExpression entries(QStringLiteral("^") + kStamp + QStringLiteral("first\n") + kStamp +
                                     QStringLiteral("second\n$"));
    EXPECT_TRUE(entries.match(text()).hasMatch()) << text().toStdString();
}

TEST_F(Logger, AnExistingLogIsKeptAndGetsNoSecondMark) {
    loadModule();
    {
        ZR_ZentriLogger earlier;
        earlier.init();
        ASSERT_TRUE(earlier.write(_T("earlier")));
    }
    ZR_ZentriLogger logger;
    logger.init();
    ASSERT_TRUE(logger.write(_T("later")));
    EXPECT_TRUE(text().contains(QStringLiteral("earlier")));
    EXPECT_TRUE(text().contains(QStringLiteral("later")));
    EXPECT_EQ(bytes().count(kByteOrderMark), 1);
}

TEST_F(Logger, AFileWithoutTheMarkIsLeftUnchanged) {
    loadModule();
    QFile older(logFile());
    ASSERT_TRUE(older.open(QIODevice::WriteOnly));
    older.write("a\0b\0", 4);
    older.close();
    ZR_ZentriLogger logger;
    logger.init();
    EXPECT_TRUE(logger.isValid());
    EXPECT_EQ(bytes(), QByteArray("a\0b\0", 4));
}

TEST_F(Logger, AnEmptyMessageIsAnEntryToo) {
    loadModule();
    ZR_ZentriLogger logger;
    logger.init();
    ASSERT_TRUE(logger.write(CString()));
    EXPECT_TRUE(
        QRegularExpression(QStringLiteral("^") + kStamp + QStringLiteral("\n$")).match(text()).hasMatch());
}

TEST_F(Logger, WithoutTheModuleThereIsNoPath) {
    ZR_ZentriLogger logger;
    logger.init();
    EXPECT_FALSE(logger.isValid());
    EXPECT_TRUE(logger.path().IsEmpty());
    EXPECT_TRUE(host.printedText() == _T("\nZR_Zentri Logger init failed : get empty logger path."));
    EXPECT_FALSE(logger.write(_T("lost")));
}

TEST_F(Logger, AFileThatCannotBeCreatedIsReportedWithTheSystemError) {
    loadModule();
    // A folder with that name is in the way.
    ASSERT_TRUE(QDir().mkdir(logFile()));
    ZR_ZentriLogger logger;
    logger.init();
    EXPECT_FALSE(logger.isValid());
    const QString printed = toQString(host.printedText());
    EXPECT_TRUE(
        QRegularExpression(
            QStringLiteral("^\nZR_Zentri Logger init failed : create log file failed.Error:[1-9]\\d*$"))
            .match(printed)
            .hasMatch())
        << printed.toStdString();
    EXPECT_FALSE(logger.write(_T("lost")));
}

TEST_F(Logger, BeforeItsInitialisationNothingIsWritten) {
    loadModule();
    ZR_ZentriLogger logger;
    EXPECT_FALSE(logger.isValid());
    EXPECT_FALSE(logger.write(_T("lost")));
    EXPECT_FALSE(QFile::exists(logFile()));
}

TEST_F(Logger, AFailedInitialisationMakesTheLogInvalid) {
    loadModule();
    ZR_ZentriLogger logger;
    logger.init();
    ASSERT_TRUE(logger.isValid());
    ASSERT_TRUE(QFile::remove(logFile()));
    ASSERT_TRUE(QDir().mkdir(logFile()));
    logger.init();
    EXPECT_FALSE(logger.isValid());
}

TEST_F(Logger, AMarkThatCannotBeWrittenLeavesTheLogUnusable) {
    loadModule();
    const FullDisk full(logFile());
    ZR_ZentriLogger logger;
    logger.init();
    EXPECT_FALSE(logger.isValid());
    EXPECT_FALSE(logger.write(_T("lost")));
}

TEST_F(Logger, AnEntryThatCannotBeWrittenFailsSilently) {
    loadModule();
    ZR_ZentriLogger logger;
    logger.init();
    ASSERT_TRUE(logger.isValid());
    {
        const FullDisk full(logFile());
        EXPECT_FALSE(logger.write(_T("lost")));
        EXPECT_TRUE(host.printedText().IsEmpty());
    }
    // The file has been closed, and the next entry is written again.
    EXPECT_TRUE(logger.write(_T("found")));
    EXPECT_TRUE(text().contains(QStringLiteral("found")));
    EXPECT_FALSE(text().contains(QStringLiteral("lost")));
    EXPECT_TRUE(QFile::remove(logFile()));
}

TEST_F(Logger, WritingDoesNotCreateTheFileAgain) {
    loadModule();
    ZR_ZentriLogger logger;
    logger.init();
    ASSERT_TRUE(QFile::remove(logFile()));
    host.clearPrinted();
    EXPECT_FALSE(logger.write(_T("lost")));
    EXPECT_FALSE(QFile::exists(logFile()));
    EXPECT_TRUE(host.printedText().IsEmpty());
}

TEST_F(Logger, EntriesOfSeveralThreadsAreAllWritten) {
    loadModule();
    ZR_ZentriLogger logger;
    logger.init();
    constexpr int kThreads = 4;
    constexpr int kEntries = 25;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&logger] {
            for (int entry = 0; entry < kEntries; ++entry) {
                EXPECT_TRUE(logger.write(_T("entry")));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(text().count(QRegularExpression(kStamp + QStringLiteral("entry\n"))), kThreads * kEntries);
}

TEST_F(Logger, AWorkersFailureIsReportedOnTheUiThread) {
    int argumentCount = 1;
    char program[] = "test";
    char* arguments[] = {program, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    std::thread([] { EXPECT_FALSE(zentriLog(_T("lost"))); }).join();
    EXPECT_TRUE(host.printedText().IsEmpty());
    QCoreApplication::processEvents();
    EXPECT_TRUE(host.printedText() == _T("\nZR_Zentri Logger init failed : get empty logger path."));
    // Once.
    EXPECT_FALSE(zentriLog(_T("lost")));
    QCoreApplication::processEvents();
    EXPECT_EQ(host.printed().size(), 1U);
}

TEST_F(Logger, AFailureIsReportedWithNoLockHeld) {
    const LoggingHost loggingHost;
    EXPECT_FALSE(zentriLog(_T("lost")));
    EXPECT_EQ(loggingHost.printed().size(), 1U);
}

TEST_F(Logger, TheModulesLoggerIsCreatedOnFirstUse) {
    loadModule();
    EXPECT_FALSE(QFile::exists(logFile()));
    EXPECT_TRUE(zentriLog(_T("first use")));
    EXPECT_TRUE(text().contains(QStringLiteral("first use")));
    EXPECT_EQ(&ZR_ZentriLogger::instance(), &ZR_ZentriLogger::instance());
}
