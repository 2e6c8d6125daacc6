#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace zentri::service {

/// Now, in milliseconds since 1970.
std::int64_t nowMs();

/// "2024-05-31 14:03:59", in local time.
std::string localTimeText(std::int64_t timeMs);

/// The calendar fields of a time, in local time.
std::tm localTime(std::int64_t timeMs);

/// The time of calendar fields in local time; fields out of range are carried over.
std::int64_t timeOfLocal(std::tm fields);

}  // namespace zentri::service
