#include "service/Clock.h"

#include <array>
#include <chrono>

namespace zentri::service {

namespace {

constexpr std::int64_t kMsPerSecond = 1000;

}  // namespace

std::int64_t nowMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

std::string localTimeText(std::int64_t timeMs) {
    const std::tm fields = localTime(timeMs);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &fields)};
}

std::tm localTime(std::int64_t timeMs) {
    const auto seconds = static_cast<std::time_t>(timeMs / kMsPerSecond);
    std::tm fields{};
    localtime_r(&seconds, &fields);
    return fields;
}

std::int64_t timeOfLocal(std::tm fields) {
    // Let mktime() determine whether daylight saving time is in effect.
    fields.tm_isdst = -1;
    return static_cast<std::int64_t>(std::mktime(&fields)) * kMsPerSecond;
}

}  // namespace zentri::service
