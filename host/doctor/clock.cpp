#include "host/doctor/database_checks.h"

#include "database/cdatabase.h"
#include "host/doctor/local_time.h"
#include "host/query.h"
#include "host/refusal.h"
#include "host/text.h"

#include <cstdlib>

namespace doctor
{

namespace
{

constexpr const char* kClockCheck = "clock";
constexpr std::int64_t kTolerated = 2;
// Time zones differ by whole quarters of an hour.
constexpr std::int64_t kZoneStep = std::int64_t{15} * 60;

// Negative when the database is behind. The look there took its time between the other two.
std::int64_t Difference(const ClockReading& reading)
{
    if (reading.there < reading.before)
    {
        return reading.there - reading.before;
    }
    return reading.there > reading.after ? reading.there - reading.after : 0;
}

bool MayBeZones(std::int64_t difference)
{
    const std::int64_t rest = std::abs(difference) % kZoneStep;
    return std::abs(difference) > kZoneStep / 2 &&
           (rest <= kTolerated || kZoneStep - rest <= kTolerated);
}

} // namespace

Finding JudgeClock(const ClockReading& reading)
{
    const std::int64_t difference = Difference(reading);
    if (std::abs(difference) <= kTolerated)
    {
        return {kClockCheck, Outcome::Ok,
                "the database's time, which dates history rows, is that of this machine", ""};
    }
    const std::string words = "the database's clock is " + AgeInWords(std::abs(difference)) +
                              (difference < 0 ? " behind" : " ahead of") + " this machine's";
    if (MayBeZones(difference))
    {
        return {kClockCheck, Outcome::Warning,
                words + ", as with another time zone: history rows have its time, audit events "
                        "this machine's",
                "Give the database's session or user the time zone of this machine, or this "
                "machine's hosts that of the database (TZ)."};
    }
    return {kClockCheck, Outcome::Warning,
            words + ": history rows have its time, audit events this machine's",
            "Set both machines by the same time server (timedatectl shows whether one is used)."};
}

Findings CheckClock(const Bank& bank)
{
    ClockReading reading;
    std::string text;
    reading.before = ClockSecondsNow();
    host::ForEachRow(bank.database, bank.where, "SELECT {fn NOW()} AS CLOCK", {"CLOCK"},
                     [&text](const host::QueryRow& row)
                     {
                         text = row.at("CLOCK");
                         return false;
                     });
    reading.after = ClockSecondsNow();
    const auto there = ClockSeconds(text);
    if (!there)
    {
        return {{kClockCheck, Outcome::NotLooked,
                 "the database told its time as " + host::Quoted(text), ""}};
    }
    reading.there = *there;
    return {JudgeClock(reading)};
}

} // namespace doctor
