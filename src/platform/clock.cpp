#include "platform/clock.h"

#include <cstdlib>

namespace korvex::platform {

Stamp stamp_from_time(std::time_t t, bool utc) {
    std::tm tm{};
#ifdef _WIN32
    if (utc)
        gmtime_s(&tm, &t);
    else
        localtime_s(&tm, &t);
#else
    if (utc)
        gmtime_r(&t, &tm);
    else
        localtime_r(&t, &tm);
#endif
    Stamp s;
    s.year = tm.tm_year + 1900;
    s.month = tm.tm_mon + 1;
    s.day = tm.tm_mday;
    s.hour = tm.tm_hour;
    s.minute = tm.tm_min;
    s.second = tm.tm_sec;
    return s;
}

Stamp SystemClock::now() const {
    // Reproducible builds: a fixed epoch is read as UTC so that the bytes do
    // not depend on the machine's time zone either.
    if (const char* e = std::getenv("SOURCE_DATE_EPOCH"); e && *e) {
        char* end = nullptr;
        long long v = std::strtoll(e, &end, 10);
        if (end && *end == '\0' && v >= 0) return stamp_from_time(static_cast<std::time_t>(v), true);
    }
    return stamp_from_time(std::time(nullptr), false);
}

}  // namespace korvex::platform
