#include "tests/faults/foresight.h"

#include <sql.h>
#include <sqlext.h>

#include <optional>
#include <string_view>

namespace faults
{

namespace
{

using fault_driver::Call;
using fault_driver::Entry;
using fault_driver::Kind;
using fault_driver::Plan;
using fault_driver::Reach;

/// What a statement is for.
enum class Purpose
{
    SetUp, ///< of a connection that is being opened
    Rules,
    Contracts,
    LookUp,
    Row,
    Event,
};

Purpose PurposeOf(std::string_view text)
{
    const auto begins = [&](std::string_view start)
    { return text.substr(0, start.size()) == start; };
    if (begins("SELECT C.CUID"))
    {
        return Purpose::Rules;
    }
    if (begins("SELECT CUID"))
    {
        return Purpose::Contracts;
    }
    if (begins("SELECT H.HUID"))
    {
        return Purpose::LookUp;
    }
    if (begins("INSERT INTO HST_SIGNRULES"))
    {
        return Purpose::Row;
    }
    return begins("INSERT INTO EVT_JOURNAL") ? Purpose::Event : Purpose::SetUp;
}

/// Reads a log by what its statements are for.
class Reading
{
public:
    explicit Reading(const Log& log) : m_log(log) {}

    Purpose PurposeOfStatement(std::size_t statement) const
    {
        return PurposeOf(m_log.statements[statement - 1].text);
    }

    /// What a connection was opened for: that of its first statement behind its set-up.
    Purpose PurposeOfConnection(std::size_t connection) const
    {
        for (const Call& call : m_log.calls)
        {
            if (call.statement != 0 && call.connection == connection &&
                PurposeOfStatement(call.statement) != Purpose::SetUp)
            {
                return PurposeOfStatement(call.statement);
            }
        }
        return Purpose::SetUp;
    }

    /// The number of the statement among those of its purpose, from 0.
    std::size_t NumberOf(std::size_t statement) const
    {
        std::size_t number = 0;
        std::size_t last = 0;
        for (const Call& call : m_log.calls)
        {
            if (call.statement == statement)
            {
                break;
            }
            if (call.statement > last &&
                PurposeOfStatement(call.statement) == PurposeOfStatement(statement))
            {
                ++number;
            }
            last = std::max(last, call.statement);
        }
        return number;
    }

    /// Whole rows that the statement had given before the call at `index`.
    std::size_t RowsBefore(std::size_t index) const
    {
        const Call& failing = m_log.calls[index];
        std::size_t fetched = 0;
        for (std::size_t each = 0; each < index; ++each)
        {
            const Call& call = m_log.calls[each];
            fetched += call.statement == failing.statement && call.entry == Entry::Fetch ? 1U : 0U;
        }
        // A row is whole when all its values are there.
        return failing.entry == Entry::GetData ? fetched - 1 : fetched;
    }

    /// Whether the library can know of the call's failure.
    bool Matters(const Call& call) const
    {
        switch (call.entry)
        {
        case Entry::AllocEnvironment:
        case Entry::AllocConnection:
        case Entry::Connect:
        case Entry::AllocStatement:
        case Entry::Execute:
        case Entry::MoreResults:
        case Entry::BindColumn:
        case Entry::Fetch:
        case Entry::GetData:
            return true;
        case Entry::GetInfo:
            // The names of product and driver; of the rest there is something to assume.
            return call.attribute == SQL_DBMS_NAME || call.attribute == SQL_DRIVER_NAME;
        default:
            return false;
        }
    }

    const Log& GetLog() const { return m_log; }

private:
    const Log& m_log;
};

/// The connection that was being opened by a call without one.
std::size_t ConnectionOf(const Log& log, std::size_t index)
{
    for (std::size_t each = index; each < log.calls.size(); ++each)
    {
        if (log.calls[each].connection != 0)
        {
            return log.calls[each].connection;
        }
    }
    return 0;
}

std::size_t IndexOf(const Log& log, std::uint64_t number)
{
    std::size_t index = 0;
    while (index < log.calls.size() && log.calls[index].number != number)
    {
        ++index;
    }
    return index;
}

/// The first call that fails and matters, at or behind the planned one.
std::optional<std::size_t> FirstThatMatters(const Reading& reading, const Plan& plan)
{
    const std::vector<Call>& calls = reading.GetLog().calls;
    const std::size_t planned = IndexOf(reading.GetLog(), plan.failing);
    for (std::size_t index = planned; index < calls.size(); ++index)
    {
        const bool fails = index == planned ||
                           (plan.reach == Reach::FromThenOn && calls[index].number != 0) ||
                           (plan.reach == Reach::Connection && calls[planned].connection != 0 &&
                            calls[index].connection == calls[planned].connection);
        if (fails && reading.Matters(calls[index]))
        {
            return index;
        }
    }
    return std::nullopt;
}

constexpr std::size_t kNoRow = 0;

void LoseRowsFrom(std::size_t row, bool doneAllTheSame, model::Mishaps& mishaps)
{
    mishaps.rowsTold = row;
    mishaps.rowsInTable = row + (doneAllTheSame ? 1U : 0U);
}

/// Whatever comes later in the check fails too.
void LoseTheRest(Purpose purpose, const Plan& plan, model::Mishaps& mishaps)
{
    const bool everything = plan.reach == Reach::FromThenOn;
    const bool ofSession =
        purpose == Purpose::Rules || purpose == Purpose::Contracts || purpose == Purpose::LookUp;
    if (!ofSession || plan.reach == Reach::Once)
    {
        return;
    }
    if (mishaps.failedLookUp == model::kWhole)
    {
        mishaps.failedLookUp = 0;
    }
    mishaps.laterLookUpsFail = true;
    if (everything)
    {
        LoseRowsFrom(kNoRow, false, mishaps);
    }
}

void ForeseeOpening(Purpose purpose, Foresight& foresight)
{
    model::Mishaps& mishaps = foresight.mishaps[0];
    switch (purpose)
    {
    case Purpose::Row:
        LoseRowsFrom(kNoRow, false, mishaps);
        foresight.noticed = true;
        break;
    case Purpose::Event:
        foresight.journalHurt = true;
        break;
    default:
        mishaps.notOpened = true;
        foresight.noticed = true;
        break;
    }
}

void ForeseeStatement(const Reading& reading, std::size_t index, const Plan& plan,
                      Foresight& foresight)
{
    const Call& call = reading.GetLog().calls[index];
    const Purpose purpose = reading.PurposeOfStatement(call.statement);
    model::Mishaps& mishaps = foresight.mishaps[0];
    const bool done = call.entry == Entry::MoreResults || plan.kind == Kind::DoAndRefuse;
    foresight.noticed = purpose != Purpose::Event;
    switch (purpose)
    {
    case Purpose::Rules:
        mishaps.ruleLines = reading.RowsBefore(index);
        break;
    case Purpose::Contracts:
        mishaps.contracts = reading.RowsBefore(index);
        break;
    case Purpose::LookUp:
        mishaps.failedLookUp = reading.NumberOf(call.statement);
        mishaps.lookUpRows = reading.RowsBefore(index);
        break;
    case Purpose::Row:
        LoseRowsFrom(reading.NumberOf(call.statement), done, mishaps);
        break;
    default:
        foresight.journalHurt = true;
        break;
    }
    LoseTheRest(purpose, plan, mishaps);
}

bool IsOfTheSession(const Reading& reading, std::size_t connection)
{
    const Purpose purpose = reading.PurposeOfConnection(connection);
    return purpose != Purpose::Row && purpose != Purpose::Event;
}

} // namespace

Foresight Foresee(const Log& clean, const Plan& plan, bool keepsConnection)
{
    Foresight foresight;
    foresight.mishaps.resize(2);
    if (plan.kind == Kind::SucceedWithRemark || plan.kind == Kind::Wait)
    {
        return foresight;
    }
    const Reading reading(clean);
    const std::optional<std::size_t> first = FirstThatMatters(reading, plan);
    if (first)
    {
        const Call& call = clean.calls[*first];
        const bool opening =
            call.statement == 0 || reading.PurposeOfStatement(call.statement) == Purpose::SetUp;
        if (opening)
        {
            ForeseeOpening(reading.PurposeOfConnection(ConnectionOf(clean, *first)), foresight);
        }
        else
        {
            ForeseeStatement(reading, *first, plan, foresight);
        }
    }
    const std::size_t hit = clean.calls[IndexOf(clean, plan.failing)].connection;
    const bool sessionDies =
        plan.reach == Reach::Connection && hit != 0 && IsOfTheSession(reading, hit);
    // With a pool the journal takes the connection that the rows were written on.
    foresight.journalHurt |= plan.reach != Reach::Once && !sessionDies;
    // A session goes on with the connection it has, and with a dead one reads no rule.
    if (sessionDies && keepsConnection && !foresight.mishaps[0].notOpened)
    {
        foresight.mishaps[1].ruleLines = 0;
    }
    return foresight;
}

std::string Describe(const Log& clean, std::uint64_t number)
{
    const std::size_t index = IndexOf(clean, number);
    if (index >= clean.calls.size())
    {
        return "no call";
    }
    const Call& call = clean.calls[index];
    std::string text = "call " + std::to_string(number) + ", entry " +
                       std::to_string(static_cast<unsigned>(call.entry)) + ", attribute " +
                       std::to_string(call.attribute) + ", connection " +
                       std::to_string(call.connection);
    if (call.statement != 0)
    {
        text += ", statement " + clean.statements[call.statement - 1].text.substr(0, 60);
    }
    return text;
}

} // namespace faults
