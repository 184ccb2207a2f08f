#include "host/doctor/local_time.h"

#include "host/moment.h"
#include "host/sentence.h"

#include <algorithm>
#include <chrono>

namespace doctor
{

namespace
{

constexpr std::string_view kShape = "0000-00-00T00:00:00";

struct Unit
{
    std::int64_t seconds;
    const char* one;
    const char* several;
};

constexpr Unit kUnits[] = {
    {std::int64_t{24} * 60 * 60, "day", "days"},
    {std::int64_t{60} * 60, "hour", "hours"},
    {60, "minute", "minutes"},
    {1, "second", "seconds"},
};

} // namespace

std::optional<std::int64_t> ClockSeconds(const std::string& localTime)
{
    const std::string text = localTime.substr(0, kShape.size());
    if (!host::HasShape(text, kShape) || !host::IsMoment(text))
    {
        return std::nullopt;
    }
    const auto part = [&text](std::size_t begin, std::size_t length)
    { return std::stoi(text.substr(begin, length)); };
    constexpr std::int64_t kMinute = 60;
    constexpr std::int64_t kHour = 60 * kMinute;
    const std::chrono::sys_days day = std::chrono::year(part(0, 4)) /
                                      std::chrono::month(static_cast<unsigned>(part(5, 2))) /
                                      std::chrono::day(static_cast<unsigned>(part(8, 2)));
    return std::chrono::sys_seconds(day).time_since_epoch().count() + part(11, 2) * kHour +
           part(14, 2) * kMinute + part(17, 2);
}

std::int64_t ClockSecondsNow()
{
    return ClockSeconds(host::LocalNow()).value_or(0);
}

std::string AgeInWords(std::int64_t seconds)
{
    const std::int64_t age = std::max<std::int64_t>(seconds, 0);
    const auto* const unit = std::find_if(std::begin(kUnits), std::end(kUnits) - 1,
                                          [age](const Unit& each) { return age >= each.seconds; });
    return host::Counted(static_cast<std::uint64_t>(age / unit->seconds), unit->one, unit->several);
}

} // namespace doctor
