// Local date and time for file stamps. SOURCE_DATE_EPOCH, when set, fixes the
// time so that two runs give identical bytes.
#pragma once

#include <ctime>

namespace korvex::platform {

struct Stamp {
    int year = 2000;  // four digits
    int month = 1;    // 1 to 12
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

class Clock {
public:
    virtual ~Clock() = default;
    virtual Stamp now() const = 0;
};

class SystemClock : public Clock {
public:
    Stamp now() const override;
};

class FixedClock : public Clock {
public:
    explicit FixedClock(Stamp s) : s_(s) {}
    Stamp now() const override { return s_; }

private:
    Stamp s_;
};

// "dd-mm-yy" and "hh-mm-ss" as the file stamps print them.
Stamp stamp_from_time(std::time_t t, bool utc);

}  // namespace korvex::platform
