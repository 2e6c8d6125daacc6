#include "sidebar/ChatDateBucket.h"

#include <ctime>
#include <stdexcept>

#include "host/core/ZR_ZentriLogger.h"
#include "host/core/ZR_ZentriText.h"

namespace {

constexpr qint64 kSecondsPerDay = 86400;
constexpr qint32 kSecondsPerHour = 3600;
constexpr qint32 kSecondsPerMinute = 60;
// The host platform's own conversion knows the years 1970 to 3000 and fails beyond; so it is on every
// platform.
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

/// Runs a conversion; writes a log line and returns false when it fails.
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

}  // namespace

QString DateBucketLabel(qint64 time, qint64 now) {
    QString label;
    const bool converted = guarded(QStringLiteral("历史对话日期转换"), time, [&] {
        const std::tm today = localTime(now);
        const std::tm yesterday = localTime(now - kSecondsPerDay);
        const std::tm local = localTime(time);
        if (dayText(local) == dayText(today)) {
            label = QStringLiteral("今天");
        } else if (dayText(local) == dayText(yesterday)) {
            label = QStringLiteral("昨天");
        } else if (monthText(local) == monthText(today)) {
            label = QStringLiteral("本月");
        } else {
            label = monthText(local);
        }
    });
    return converted ? label : QStringLiteral("日期无法识别");
}

bool normalisedPageTime(qint64 time, qint64 now, qint64& pageTime) {
    return guarded(QStringLiteral("设置页码历史时间"), time, [&] {
        const std::tm today = localTime(now);
        const std::tm yesterday = localTime(now - kSecondsPerDay);
        const std::tm local = localTime(time);
        qint32 sinceMidnight =
            local.tm_hour * kSecondsPerHour + local.tm_min * kSecondsPerMinute + local.tm_sec;
        const QString day = dayText(local);
        if (day != dayText(today) && day != dayText(yesterday)) {
            // The whole day of the month is taken off, so a month's page stands at the start of the day
            // before the 1st. That is meant: the time only orders the pages.
            sinceMidnight += local.tm_mday * static_cast<qint32>(kSecondsPerDay);
        }
        pageTime = time - sinceMidnight;
    });
}
