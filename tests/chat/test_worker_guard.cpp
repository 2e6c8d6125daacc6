#include <gtest/gtest.h>

#include <QException>
#include <QTextCodec>
#include <stdexcept>

#include "chat/ZR_AiChatWorkerGuard.h"
#include "tests/chat/LogFile.h"

namespace {

/// The entries logged by this work.
template <typename Work>
QStringList loggedBy(const Work& work) {
    const int logged = LogFile::messages().size();
    runAndLogExceptions(_T("begin:"), _T("unknown"), work);
    return LogFile::messages().mid(logged);
}

}  // namespace

TEST(WorkerGuard, LogsNothingWithoutAnException) {
    EXPECT_TRUE(loggedBy([] {}).isEmpty());
}

TEST(WorkerGuard, LogsTheMessageOfAnException) {
    EXPECT_EQ(loggedBy([] { throw std::runtime_error("100%s broken"); }),
              QStringList{QStringLiteral("begin:100%s broken")});
    const QString message = QString::fromLatin1(QException().what());
    EXPECT_EQ(loggedBy([] { throw QException(); }), QStringList{QStringLiteral("begin:") + message});
}

TEST(WorkerGuard, ReadsTheMessageInTheSystemsCodePage) {
    QTextCodec* const system = QTextCodec::codecForLocale();
    for (const char* const codePage : {"GBK", "UTF-8"}) {
        QTextCodec* const codec = QTextCodec::codecForName(codePage);
        ASSERT_NE(codec, nullptr) << codePage;
        QTextCodec::setCodecForLocale(codec);
        const QByteArray message = codec->fromUnicode(QStringLiteral("文件损坏"));
        EXPECT_EQ(loggedBy([&message] { throw std::runtime_error(message.constData()); }),
                  QStringList{QStringLiteral("begin:文件损坏")})
            << codePage;
    }
    QTextCodec::setCodecForLocale(system);
}

TEST(WorkerGuard, LogsAnExceptionWithoutAMessageAsUnknown) {
    EXPECT_EQ(loggedBy([] { throw 1; }), QStringList{QStringLiteral("unknown")});
    EXPECT_EQ(loggedBy([] { AfxThrowNotSupportedException(); }), QStringList{QStringLiteral("unknown")});
}

TEST(WorkerGuard, DeletesAnMfcException) {
    class CountedException : public CException {
    public:
        explicit CountedException(int& living) : m_living(living) { ++m_living; }
        ~CountedException() override { --m_living; }

    private:
        int& m_living;
    };

    int living = 0;
    EXPECT_EQ(loggedBy([&] { throw static_cast<CException*>(new CountedException(living)); }),
              QStringList{QStringLiteral("unknown")});
    EXPECT_EQ(living, 0);
}
