#pragma once

#include <QString>
#include <QtGlobal>

/// Heading of the date page for a time, as seen at `now`: today, yesterday, this month, or the month itself.
/// Both are seconds since 1970, compared in local time. A time that cannot be converted is logged and gets a
/// heading of its own. UI thread.
QString DateBucketLabel(qint64 time, qint64 now);

/// The time that orders the page of `time`, as seen at `now`. Returns false, with a line in the log and
/// `pageTime` unchanged, when the time cannot be converted. UI thread.
bool normalisedPageTime(qint64 time, qint64 now, qint64& pageTime);
