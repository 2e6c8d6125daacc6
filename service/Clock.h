#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace zentri::service {

/// The current time in milliseconds since 1970-01-01 UTC, as all times below.
std::int64_t nowMs();

/// Formats a time as "2024-05-31 14:03:59", in local time.
std::string localTimeText(std::int64_t timeMs);

/// Converts a time to calendar fields in local time.
std::tm localTime(std::int64_t timeMs);

/// Converts calendar fields in local time to a time; fields out of range are normalised as by mktime().
std::int64_t timeOfLocal(std::tm fields);

}  // namespace zentri::service
