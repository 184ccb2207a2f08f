#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <vector>

namespace support
{

/// How a check ended, and the words for it: those of signcheck's JSON output.
enum class CheckEnd : std::size_t
{
    NoRule,
    Success,
    Refused,
    NotRun,
};
inline constexpr const char* kCheckEnds[] = {"no-rule", "success", "refused", "not-run"};

/// What a check fell short of.
enum class Shortfall : std::size_t
{
    AmountsUnknown,
    RulesIncomplete,
    LookupsIncomplete,
    RowsMissing,
    EventSpooled,
    EventLost,
    ReportNotHandedOn,
};
inline constexpr const char* kShortfalls[] = {
    "amounts-unknown", "rules-incomplete", "lookups-incomplete",  "rows-missing",
    "event-spooled",   "event-lost",       "report-not-handed-on"};

/// Reason codes that are told apart; every other is "other".
inline constexpr const char* kReasons[] = {"none", "AM02", "NARR", "other"};

using ShortfallFlags = std::array<bool, std::size(kShortfalls)>;

/// One check, as it is counted. Texts are Windows-1252.
struct CheckFacts
{
    CheckEnd end = CheckEnd::NotRun;
    std::string_view reasonCode; ///< empty: none
    std::string_view service;
    ShortfallFlags shortfalls = {};
};

/// Counts checks by end, reason and service. Any thread at any time; takes no memory, however many
/// names of services come.
class CheckCounts
{
public:
    /// The names that have counts of their own, in the order in which they came; those behind them
    /// and those that no contract can have are counted as one.
    static constexpr std::size_t kMostServices = 64;
    static constexpr std::size_t kLongestService = 8;
    /// That one's name: too long for a service.
    static constexpr const char* kOtherServices = "(other services)";

    using Counts =
        std::array<std::array<std::uint64_t, std::size(kReasons)>, std::size(kCheckEnds)>;

    /// Counts by end and reason.
    struct OfService
    {
        std::array<char, kLongestService> name = {};
        std::size_t length = 0;
        Counts counts = {};

        std::string_view Name() const noexcept { return {name.data(), length}; }
    };

    struct Reading
    {
        std::vector<OfService> services; ///< in the order in which they came
        Counts others = {};
        std::array<std::uint64_t, std::size(kShortfalls)> shortfalls = {};
    };

    void Add(const CheckFacts& check) noexcept;
    Reading Read() const;

private:
    Counts& CountsOf(std::string_view service) noexcept;

    mutable std::mutex m_mutex;
    std::array<OfService, kMostServices> m_services = {};
    std::size_t m_known = 0;
    Counts m_others = {};
    std::array<std::uint64_t, std::size(kShortfalls)> m_shortfalls = {};
};

} // namespace support
