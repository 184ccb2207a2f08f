#include "host/replay/past_check.h"

#include "host/moment.h"
#include "support/codepage.h"
#include "support/numbers.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace replay
{

namespace
{

using host::QueryRow;

// What a check cuts the list of signers to.
constexpr std::size_t kSignersLength = 2048;
// The rows of one check are written one after the other, without a pause.
constexpr std::int64_t kSecondsOfOneCheck = 5;
// Hosts that write at the same time mix their rows; more of them than this are not looked through.
constexpr std::uint64_t kRowsLookedThrough = 64;

constexpr const char* kIdentity[] = {"SERVER", "STATUT", "VPNAME",   "TYPE_PTC",
                                     "VFNAME", "VCNAME", "ORDERID",  "IDFICVFS",
                                     "CNS",    "TOTAL",  "MAXORDER", "FILENAME"};
constexpr const char* kFinding[] = {"TYPE_CTRL", "SIGNER1", "SIGNER2", "MOTIF"};

template <std::size_t count>
std::string Joined(const QueryRow& row, const char* const (&columns)[count])
{
    constexpr char kBetween = '\x1f';
    std::string text;
    for (const char* const column : columns)
    {
        text += row.at(column) + kBetween;
    }
    return text;
}

// Of a local time, for differences only; none for a text that is no time.
std::optional<std::int64_t> SecondOf(const std::string& text)
{
    constexpr std::size_t kLength = 19;
    const std::string moment = text.substr(0, kLength);
    if (!host::HasShape(moment, "0000-00-00T00:00:00") || !host::IsMoment(moment))
    {
        return std::nullopt;
    }
    const auto number = [&moment](std::size_t at, std::size_t digits)
    { return support::ToInt32(moment.substr(at, digits).c_str()); };
    const std::chrono::sys_days day =
        std::chrono::year_month_day(std::chrono::year(number(0, 4)),
                                    std::chrono::month(static_cast<unsigned int>(number(5, 2))),
                                    std::chrono::day(static_cast<unsigned int>(number(8, 2))));
    constexpr std::int64_t kHoursOfADay = 24;
    const std::int64_t hours = day.time_since_epoch().count() * kHoursOfADay + number(11, 2);
    return (hours * 60 + number(14, 2)) * 60 + number(17, 2);
}

bool AreOfOneTime(std::optional<std::int64_t> left, std::optional<std::int64_t> right)
{
    return !left || !right || std::abs(*left - *right) <= kSecondsOfOneCheck;
}

// Some products keep an infinity or what is no number, too.
bool IsNumber(const std::string& text)
{
    return text.find_first_not_of("0123456789+-.eE") == std::string::npos;
}

std::string ObstacleOf(const QueryRow& row, const PastCheck& check)
{
    for (const char* const column : {"SERVER", "TYPE_PTC", "TOTAL", "MAXORDER"})
    {
        if (row.at(column).empty())
        {
            return std::string("column ") + column + " is NULL";
        }
    }
    const std::string& verdict = row.at("STATUT");
    if (verdict != "0" && verdict != "1" && verdict != "2")
    {
        return "column STATUT holds no verdict";
    }
    if (!IsNumber(row.at("TOTAL")) || !IsNumber(row.at("MAXORDER")))
    {
        return "an amount is no finite number";
    }
    if (support::WideFromUtf8(check.signers).size() >= kSignersLength)
    {
        return "the list of signers fills its column and may have been cut";
    }
    return {};
}

} // namespace

const std::vector<std::string>& PastCheckColumns()
{
    static const std::vector<std::string> columns = {
        "ROWNO",   "DATETIME", "SERVER",  "STATUT",   "VPNAME",    "TYPE_PTC",
        "VFNAME",  "VCNAME",   "ORDERID", "IDFICVFS", "TYPE_CTRL", "SIGNER1",
        "SIGNER2", "MOTIF",    "CNS",     "TOTAL",    "MAXORDER",  "FILENAME"};
    return columns;
}

std::optional<PastCheck> CheckGrouper::Take(const QueryRow& row)
{
    ++m_taken;
    const std::string identity = Joined(row, kIdentity);
    if (m_open && identity == m_identity)
    {
        Extend(row);
        return std::nullopt;
    }
    std::optional<PastCheck> closed = Finish();
    Open(row, identity);
    return closed;
}

std::optional<PastCheck> CheckGrouper::Finish()
{
    std::optional<PastCheck> closed;
    closed.swap(m_open);
    if (closed)
    {
        m_closed.push_back({m_identity, m_oldestSecond, m_taken});
    }
    return closed;
}

void CheckGrouper::Open(const QueryRow& row, const std::string& identity)
{
    m_open.emplace();
    m_identity = identity;
    m_findings.clear();
    PastCheck& check = *m_open;
    check.newestRow = host::NumberIn(row, "ROWNO");
    check.key = {row.at("VPNAME"), row.at("VFNAME"), row.at("VCNAME"),
                 host::NumberIn(row, "TYPE_PTC"), host::NumberIn(row, "SERVER")};
    check.orderId = row.at("ORDERID");
    check.file = row.at("FILENAME");
    check.signers = row.at("CNS");
    check.total = support::ToDouble(row.at("TOTAL").c_str());
    check.largest = support::ToDouble(row.at("MAXORDER").c_str());
    check.verdict = static_cast<unsigned int>(host::NumberIn(row, "STATUT"));
    check.obstacle = ObstacleOf(row, check);
    m_newestSecond = SecondOf(row.at("DATETIME"));
    check.mayBePart = HasEqualNearby(identity, m_newestSecond);
    Extend(row);
}

void CheckGrouper::Extend(const QueryRow& row)
{
    PastCheck& check = *m_open;
    check.oldestRow = host::NumberIn(row, "ROWNO");
    check.time = row.at("DATETIME");
    ++check.rows;
    m_oldestSecond = SecondOf(check.time);
    const bool isNew = m_findings.insert(Joined(row, kFinding)).second;
    check.mayBeSeveral =
        check.mayBeSeveral || !isNew || !AreOfOneTime(m_newestSecond, m_oldestSecond);
}

bool CheckGrouper::HasEqualNearby(const std::string& identity, std::optional<std::int64_t> second)
{
    while (!m_closed.empty() && m_taken - m_closed.front().row > kRowsLookedThrough)
    {
        m_closed.pop_front();
    }
    return std::any_of(m_closed.begin(), m_closed.end(),
                       [&](const Closed& each)
                       { return each.identity == identity && AreOfOneTime(each.second, second); });
}

} // namespace replay
