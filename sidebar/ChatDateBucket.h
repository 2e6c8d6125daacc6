#pragma once

#include <QString>
#include <QtGlobal>

/// Headings of the date pages. The page of an earlier month has the month as its heading, "2024年04月".
struct ChatDateHeading {
    static QString today() { return QStringLiteral("今天"); }
    static QString yesterday() { return QStringLiteral("昨天"); }
    static QString thisMonth() { return QStringLiteral("本月"); }
    static QString unrecognised() { return QStringLiteral("日期无法识别"); }
};

/// Heading of the date page for `time` as seen at `now`, both in seconds since 1970 and compared in local
/// time. A time that cannot be converted is logged and gets ChatDateHeading::unrecognised(). UI thread.
QString DateBucketLabel(qint64 time, qint64 now);

/// Sort key of the page for `time` as seen at `now`, both in seconds since 1970. Returns false, writes a log
/// line and leaves `pageTime` unchanged if a time cannot be converted. UI thread.
bool normalisedPageTime(qint64 time, qint64 now, qint64& pageTime);
