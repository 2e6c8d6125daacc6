#include "sidebar/ChatDateBucket.h"

#include <ctime>
#include <stdexcept>

#include "host/core/ZR_ZentriLogger.h"
#include "host/core/ZR_ZentriText.h"

namespace {

constexpr qint64 kSecondsPerDay = 86400;
constexpr qint32 kSecondsPerHour = 3600;
constexpr qint32 kSecondsPerMinute = 60;
// Range of the C run-time's conversion on Windows, the years 1970 to 3000. Kept on every platform.
constexpr qint64 kFirstConvertible = 0;
constexpr qint64 kLastConvertible = 32535215999;

std::tm localTime(qint64 time) {
    if (time < kFirstConvertible || time > kLastConvertible) {
        throw std::invalid_argument("invalid argument");
    }
    const auto seconds = static_cast<std::time_t>(time);
    const std::tm* local = std::localtime(&seconds);
    if (local == nullptr) {
        throw std::invalid_argument("invalid argument");
    }
    return *local;
}

QString twoDigits(int number) {
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

QString monthText(const std::tm& local) {
    constexpr int kFirstYear = 1900;
    return QStringLiteral("%1年%2月").arg(kFirstYear + local.tm_year).arg(twoDigits(local.tm_mon + 1));
}

QString dayText(const std::tm& local) {
    return monthText(local) + twoDigits(local.tm_mday) + QStringLiteral("日");
}

/// A time in local time, and the page it belongs to as seen at `now`.
struct DatedTime {
    enum class Page { Today, Yesterday, ThisMonth, OtherMonth };

    /// Throws std::invalid_argument if a time cannot be converted.
    DatedTime(qint64 time, qint64 now) {
        const std::tm today = localTime(now);
        // A fixed number of seconds, also when the clocks change in between.
        const std::tm yesterday = localTime(now - kSecondsPerDay);
        local = localTime(time);
        if (dayText(local) == dayText(today)) {
            page = Page::Today;
        } else if (dayText(local) == dayText(yesterday)) {
            page = Page::Yesterday;
        } else if (monthText(local) == monthText(today)) {
            page = Page::ThisMonth;
        }
    }

    std::tm local = {};
    Page page = Page::OtherMonth;
};

/// Runs a conversion; writes a log line and returns false if it throws.
template <typename Conversion>
bool guarded(const QString& action, qint64 time, const Conversion& conversion) {
    try {
        conversion();
        return true;
    } catch (const std::exception& error) {
        zentriLog(toCString(QStringLiteral("%1时捕获到错误:%2,输入的时间值为:%3")
                                .arg(action, QString::fromLocal8Bit(error.what()), QString::number(time))));
    } catch (...) {
        zentriLog(toCString(
            QStringLiteral("%1时捕获到未知错误,输入的时间值为:%2").arg(action, QString::number(time))));
    }
    return false;
}

QString headingOf(const DatedTime& dated) {
    switch (dated.page) {
        case DatedTime::Page::Today:
            return ChatDateHeading::today();
        case DatedTime::Page::Yesterday:
            return ChatDateHeading::yesterday();
        case DatedTime::Page::ThisMonth:
            return ChatDateHeading::thisMonth();
        case DatedTime::Page::OtherMonth:
            break;
    }
    return monthText(dated.local);
}

}  // namespace

QString DateBucketLabel(qint64 time, qint64 now) {
    QString label = ChatDateHeading::unrecognised();
    guarded(QStringLiteral("历史对话日期转换"), time, [&] { label = headingOf(DatedTime(time, now)); });
    return label;
}

bool normalisedPageTime(qint64 time, qint64 now, qint64& pageTime) {
    return guarded(QStringLiteral("设置页码历史时间"), time, [&] {
        const DatedTime dated(time, now);
        const std::tm& local = dated.local;
        qint32 offset = local.tm_hour * kSecondsPerHour + local.tm_min * kSecondsPerMinute + local.tm_sec;
        if (dated.page != DatedTime::Page::Today && dated.page != DatedTime::Page::Yesterday) {
            // All days of the month count, the first one too, so the result is the start of the day before
            // the 1st. That is intended: the time only orders the pages.
            offset += local.tm_mday * static_cast<qint32>(kSecondsPerDay);
        }
        pageTime = time - offset;
    });
}
