#include "tests/soak/told.h"

#include "signutils/check_outcome.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdlib>
#include <unistd.h>

namespace soak
{

namespace
{

const char* NameOf(JournalState state)
{
    switch (state)
    {
    case JournalState::NotDue:
        return "not due";
    case JournalState::Written:
        return "written";
    case JournalState::Spooled:
        return "spooled";
    case JournalState::Lost:
        break;
    }
    return "lost";
}

const char* NameOf(ReportState state)
{
    switch (state)
    {
    case ReportState::NotDue:
        return "not due";
    case ReportState::HandedOn:
        return "handed on";
    case ReportState::NotHandedOn:
        break;
    }
    return "not handed on";
}

} // namespace

long long Microseconds()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

void Tell(const Told& told, const CheckOutcome& outcome)
{
    const nlohmann::json line = {{"order", told.order},
                                 {"begun", told.begun},
                                 {"ended", told.ended},
                                 {"verdict", told.verdict},
                                 {"expected", told.expected},
                                 {"asked", told.asked},
                                 {"ran", outcome.ran},
                                 {"rulesComplete", outcome.rulesComplete},
                                 {"lookupsComplete", outcome.lookupsComplete},
                                 {"rowsDue", outcome.rowsDue},
                                 {"rowsWritten", outcome.rowsWritten},
                                 {"journal", NameOf(outcome.journal)},
                                 {"report", NameOf(outcome.report)},
                                 {"reportFileId", outcome.reportFileId},
                                 {"problem", outcome.problem.SafeGetString()}};
    // The problem is Windows-1252.
    TellLine(line.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace));
}

void TellLine(std::string line)
{
    line += '\n';
    if (write(STDOUT_FILENO, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
    {
        // Nobody reads any more.
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace soak
