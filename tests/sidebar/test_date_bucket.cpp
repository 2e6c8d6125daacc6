#include <gtest/gtest.h>

#include <QRandomGenerator>
#include <QString>
#include <algorithm>
#include <ctime>
#include <cwchar>

#include "sidebar/ChatDateBucket.h"
#include "tests/chat/LogFile.h"
#include "tests/sidebar/Zone.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ViewTest.h"

namespace {

constexpr qint64 kHour = 3600;

qint64 local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    std::tm parts = {};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1;
    return std::mktime(&parts);
}

class DateBucket : public ViewTest, public testing::WithParamInterface<const char*> {
protected:
    DateBucket() : m_zone(GetParam()) {}

    static qint64 pageTime(qint64 time, qint64 now) {
        qint64 result = -12345;
        EXPECT_TRUE(normalisedPageTime(time, now, result));
        return result;
    }

    Zone m_zone;
};

using DateBucketFailure = ViewTest;

/// Sets the folder of the log file before the first test.
class LogPlace : public testing::Environment {
public:
    void SetUp() override { LogFile::install(); }
};

testing::Environment* const kLogPlace = testing::AddGlobalTestEnvironment(new LogPlace);

}  // namespace

TEST_P(DateBucket, TodayLastsFromMidnightToMidnight) {
    const qint64 now = local(2024, 5, 20, 15, 30);
    EXPECT_EQ(DateBucketLabel(now, now), QStringLiteral("今天"));
    EXPECT_EQ(DateBucketLabel(local(2024, 5, 20), now), QStringLiteral("今天"));
    EXPECT_EQ(DateBucketLabel(local(2024, 5, 20, 23, 59, 59), now), QStringLiteral("今天"));
    EXPECT_EQ(DateBucketLabel(local(2024, 5, 19, 23, 59, 59), now), QStringLiteral("昨天"));
}

TEST_P(DateBucket, DaysBeforeTodayAreYesterdayThenThisMonth) {
    const qint64 now = local(2024, 5, 20, 15, 30);
    EXPECT_EQ(DateBucketLabel(local(2024, 5, 19), now), QStringLiteral("昨天"));
    EXPECT_EQ(DateBucketLabel(local(2024, 5, 18, 23, 59, 59), now), QStringLiteral("本月"));
    EXPECT_EQ(DateBucketLabel(local(2024, 5, 1), now), QStringLiteral("本月"));
    // A future day of this month is neither today nor yesterday.
    EXPECT_EQ(DateBucketLabel(local(2024, 5, 21), now), QStringLiteral("本月"));
}

TEST_P(DateBucket, EarlierMonthsHaveTheMonthAsHeading) {
    const qint64 now = local(2024, 5, 20, 15, 30);
    EXPECT_EQ(DateBucketLabel(local(2024, 4, 30, 23, 59, 59), now), QStringLiteral("2024年04月"));
    EXPECT_EQ(DateBucketLabel(local(2023, 11, 7), now), QStringLiteral("2023年11月"));
}

TEST_P(DateBucket, SameMonthOfLastYearIsNotThisMonth) {
    EXPECT_EQ(DateBucketLabel(local(2023, 5, 20), local(2024, 5, 20, 12)), QStringLiteral("2023年05月"));
}

TEST_P(DateBucket, OnTheFirstOfAMonthTheDayBeforeIsYesterday) {
    EXPECT_EQ(DateBucketLabel(local(2024, 4, 30, 9), local(2024, 5, 1, 10)), QStringLiteral("昨天"));
    EXPECT_EQ(DateBucketLabel(local(2023, 12, 31, 9), local(2024, 1, 1, 10)), QStringLiteral("昨天"));
    EXPECT_EQ(DateBucketLabel(local(2023, 12, 30, 9), local(2024, 1, 1, 10)), QStringLiteral("2023年12月"));
    EXPECT_EQ(DateBucketLabel(local(2024, 2, 29, 9), local(2024, 3, 1, 10)), QStringLiteral("昨天"));
}

TEST_P(DateBucket, MidnightStartsANewDay) {
    const qint64 midnight = local(2024, 5, 20);
    EXPECT_EQ(DateBucketLabel(midnight - 1, midnight), QStringLiteral("昨天"));
    EXPECT_EQ(DateBucketLabel(midnight, midnight), QStringLiteral("今天"));
    EXPECT_EQ(DateBucketLabel(midnight, midnight - 1), QStringLiteral("本月"));
}

TEST_P(DateBucket, PageTimeOfTodayAndYesterdayIsTheirMidnight) {
    const qint64 now = local(2024, 5, 20, 15, 30);
    EXPECT_EQ(pageTime(local(2024, 5, 20, 13, 14, 15), now), local(2024, 5, 20));
    EXPECT_EQ(pageTime(local(2024, 5, 19, 23, 59, 59), now), local(2024, 5, 19));
}

TEST_P(DateBucket, PageTimeOfAMonthIsTheDayBeforeItsFirstAsIntended) {
    const qint64 now = local(2024, 6, 20, 15, 30);
    EXPECT_EQ(pageTime(local(2024, 6, 7, 1, 2, 3), now), local(2024, 5, 31));
    EXPECT_EQ(pageTime(local(2024, 6, 18, 22), now), local(2024, 5, 31));
    EXPECT_EQ(pageTime(local(2024, 1, 1), now), local(2023, 12, 31));
    EXPECT_EQ(pageTime(local(2023, 8, 31, 23, 59, 59), now), local(2023, 7, 31));
}

/// The plain rules, with the formatting of the C library.
class PlainBucket {
public:
    static QString label(qint64 time, qint64 now) {
        if (text(L"%Y年%m月%d日", time) == text(L"%Y年%m月%d日", now)) {
            return QStringLiteral("今天");
        }
        if (text(L"%Y年%m月%d日", time) == text(L"%Y年%m月%d日", now - kDay)) {
            return QStringLiteral("昨天");
        }
        if (text(L"%Y年%m月", time) == text(L"%Y年%m月", now)) {
            return QStringLiteral("本月");
        }
        return text(L"%Y年%m月", time);
    }
    static qint64 pageTime(qint64 time, qint64 now) {
        const std::tm t = parts(time);
        const QString bucket = label(time, now);
        const bool isDay = bucket == QStringLiteral("今天") || bucket == QStringLiteral("昨天");
        const int seconds = t.tm_hour * 3600 + t.tm_min * 60 + t.tm_sec;
        return time - (isDay ? seconds : t.tm_mday * 86400 + seconds);
    }

private:
    static std::tm parts(qint64 time) {
        const auto seconds = static_cast<std::time_t>(time);
        return *std::localtime(&seconds);
    }
    static QString text(const wchar_t* format, qint64 time) {
        wchar_t buffer[128];
        const std::tm t = parts(time);
        return QString::fromWCharArray(buffer, static_cast<int>(std::wcsftime(buffer, 128, format, &t)));
    }
};

TEST_P(DateBucket, RandomTimesMatchThePlainRules) {
    QRandomGenerator random(4711);
    for (int i = 0; i < 4000; ++i) {
        const qint64 now = kDay + random.bounded(1, 60 * 366) * kDay + random.bounded(static_cast<int>(kDay));
        const int spans[] = {2 * static_cast<int>(kDay), 35 * static_cast<int>(kDay), 1 << 30};
        const qint64 time = std::max<qint64>(0, now + kDay - random.bounded(spans[i % 3]));
        ASSERT_EQ(DateBucketLabel(time, now), PlainBucket::label(time, now)) << time << " at " << now;
        ASSERT_EQ(pageTime(time, now), PlainBucket::pageTime(time, now)) << time << " at " << now;
    }
}

TEST_P(DateBucket, MonthEndsOfThreeYearsAreGroupedCorrectly) {
    for (int year = 2023; year <= 2025; ++year) {
        for (int month = 1; month <= 12; ++month) {
            const qint64 first = local(year, month, 1);
            const qint64 before = first - 1;
            const QString former =
                month == 1 ? QStringLiteral("%1年12月").arg(year - 1)
                           : QStringLiteral("%1年%2月").arg(year).arg(month - 1, 2, 10, QLatin1Char('0'));
            EXPECT_EQ(DateBucketLabel(before, local(year, month, 1, 12)), QStringLiteral("昨天"))
                << year << '/' << month;
            EXPECT_EQ(DateBucketLabel(before, local(year, month, 1, 23, 59, 59)), QStringLiteral("昨天"));
            EXPECT_EQ(DateBucketLabel(before, local(year, month, 2, 12)), former);
            EXPECT_EQ(DateBucketLabel(before - 2 * kDay, first), former);
            EXPECT_EQ(DateBucketLabel(first, local(year, month, 3, 12)), QStringLiteral("本月"));
            // The page of a month is sorted below the pages of its days and above that of the month before.
            const qint64 now = local(year, month, 3, 12);
            EXPECT_GE(pageTime(local(year, month, 2, 12), now), pageTime(first, now));
            EXPECT_GT(pageTime(first, now), pageTime(before, now));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Zones, DateBucket,
                         testing::Values("UTC0", "Asia/Shanghai", "America/New_York", "Asia/Kolkata",
                                         "Pacific/Kiritimati"));
#ifndef _WIN32
// The C run-time on Windows does not know their daylight saving rules.
INSTANTIATE_TEST_SUITE_P(ZonesOfOtherRules, DateBucket,
                         testing::Values("Pacific/Auckland", "Europe/Berlin", "Australia/Lord_Howe",
                                         "America/Sao_Paulo"));
#endif

TEST(DateBucketZones, YesterdayIs86400SecondsAgoAlsoWhenClocksChangeAsIntended) {
    // Clocks go forward on 2024-03-10 and back on 2024-11-03, so these days do not have 86400 seconds.
    const Zone zone("America/New_York");
    const qint64 afterSpring = local(2024, 3, 11, 0, 30);
    EXPECT_EQ(DateBucketLabel(local(2024, 3, 10, 12), afterSpring), QStringLiteral("本月"));
    EXPECT_EQ(DateBucketLabel(local(2024, 3, 9, 23, 45), afterSpring), QStringLiteral("昨天"));
    const qint64 afterAutumn = local(2024, 11, 3, 23, 30);
    EXPECT_EQ(DateBucketLabel(local(2024, 11, 2, 12), afterAutumn), QStringLiteral("本月"));
    EXPECT_EQ(DateBucketLabel(local(2024, 11, 3, 0, 10), afterAutumn), QStringLiteral("今天"));
}

TEST(DateBucketZones, PageTimeSubtractsTheClockTimeAlsoWhenClocksChangeAsIntended) {
    const Zone zone("America/New_York");
    // This day is an hour short: the clock time is one hour more than has passed since midnight.
    const qint64 spring = local(2024, 3, 10, 15);
    qint64 time = 0;
    ASSERT_TRUE(normalisedPageTime(spring, spring, time));
    EXPECT_EQ(time, local(2024, 3, 10) - kHour);
    // This day has one hour twice.
    const qint64 autumn = local(2024, 11, 3, 15);
    ASSERT_TRUE(normalisedPageTime(autumn, autumn, time));
    EXPECT_EQ(time, local(2024, 11, 3) + kHour);
    // The same applies to the page of a month.
    ASSERT_TRUE(normalisedPageTime(local(2024, 3, 20, 12), local(2024, 6, 1), time));
    EXPECT_EQ(time, local(2024, 2, 29) - kHour);
}

#ifndef _WIN32
TEST(DateBucketZones, DayWithoutAMidnight) {
    // In 2017 the clocks here went from 23:59:59 to 01:00.
    const Zone zone("America/Sao_Paulo");
    const qint64 first = local(2017, 10, 15, 1);
    EXPECT_EQ(DateBucketLabel(first, first), QStringLiteral("今天"));
    EXPECT_EQ(DateBucketLabel(first - 1, first), QStringLiteral("昨天"));
    qint64 time = 0;
    ASSERT_TRUE(normalisedPageTime(first + kHour, first + kHour, time));
    EXPECT_EQ(time, first - kHour);
}
#endif

TEST(DateBucketZones, LastDayOfAMonthHasTheLargestOffset) {
    // 31 days and 23:59:59, well within 32 bits.
    const Zone zone("UTC0");
    qint64 time = 0;
    ASSERT_TRUE(normalisedPageTime(local(2024, 1, 31, 23, 59, 59), local(2024, 6, 1), time));
    EXPECT_EQ(local(2024, 1, 31, 23, 59, 59) - time, 31 * kDay + 23 * kHour + 59 * 60 + 59);
    // A time of more than 32 bits.
    ASSERT_TRUE(normalisedPageTime(local(2999, 12, 31, 23, 59, 59), local(2024, 6, 1), time));
    EXPECT_EQ(time, local(2999, 11, 30));
}

TEST(DateBucketZones, EpochHasAMonthPageWithANegativePageTime) {
    for (const char* name : {"UTC0", "Asia/Shanghai", "America/New_York"}) {
        const Zone zone(name);
        const qint64 now = local(2024, 5, 20, 12);
        const bool west = local(1970, 1, 1) > 0;
        EXPECT_EQ(DateBucketLabel(0, now), west ? QStringLiteral("1969年12月") : QStringLiteral("1970年01月"))
            << name;
        qint64 time = 0;
        EXPECT_TRUE(normalisedPageTime(0, now, time));
        EXPECT_LT(time, -1) << name;
    }
}

TEST_F(DateBucketFailure, TimeThatCannotBeConvertedGetsItsOwnHeadingAndALogLine) {
    for (const qint64 time : {qint64{-1}, qint64{1} << 60U, qint64{32535216000}}) {
        EXPECT_EQ(DateBucketLabel(time, 1700000000), QStringLiteral("日期无法识别")) << time;
        EXPECT_EQ(
            LogFile::messages().value(LogFile::messages().size() - 1),
            QStringLiteral("历史对话日期转换时捕获到错误:invalid argument,输入的时间值为:%1").arg(time));
    }
    EXPECT_EQ(DateBucketLabel(32535215999, 1700000000).left(2), QStringLiteral("30"));
}

TEST_F(DateBucketFailure, PageTimeIsUnchangedIfATimeCannotBeConverted) {
    qint64 time = 4711;
    EXPECT_FALSE(normalisedPageTime(-1, 1700000000, time));
    EXPECT_EQ(time, 4711);
    EXPECT_EQ(LogFile::messages().value(LogFile::messages().size() - 1),
              QStringLiteral("设置页码历史时间时捕获到错误:invalid argument,输入的时间值为:-1"));
}

TEST_F(DateBucketFailure, CurrentTimeThatCannotBeConvertedIsAFailure) {
    EXPECT_EQ(DateBucketLabel(1700000000, -5), QStringLiteral("日期无法识别"));
    // On the first day of the epoch, yesterday is before the epoch.
    EXPECT_EQ(DateBucketLabel(kHour, kHour), QStringLiteral("日期无法识别"));
    EXPECT_NE(DateBucketLabel(kHour, kDay + kHour), QStringLiteral("日期无法识别"));
}
