#include "host/replay/replay_command.h"

#include "database/cdatabase.h"
#include "host/check_request.h"
#include "host/connection.h"
#include "host/exit_status.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/query_options.h"
#include "host/replay/telling.h"
#include "host/rulebook/planned_change.h"

#include <iterator>

namespace host
{

namespace
{

// The contract tables keep signed numbers.
constexpr Choice kModes[] = {{"off", 0}, {"on", 1}};

replay::AskedWays AskedFrom(const OptionValues& values)
{
    replay::AskedWays asked;
    if (const OptionValue* const type = values.Find("type"); type != nullptr)
    {
        asked.type = WholeNumber(*type, kLargestContractNumber);
    }
    if (const OptionValue* const mode = values.Find("veu-mode"); mode != nullptr)
    {
        asked.isDistributed = ChoiceFrom(*mode, kModes, std::size(kModes)) != 0;
    }
    return asked;
}

Conditions ReplayConditionsFrom(const OptionValues& values)
{
    Conditions conditions;
    FilterBy(values, "partner", "VPNAME", conditions);
    FilterBy(values, "service", "VFNAME", conditions);
    FilterBy(values, "client", "VCNAME", conditions);
    FilterByTime(values, "DATETIME", conditions);
    return conditions;
}

replay::Books BooksOf(const rulebook::PlannedChange& planned)
{
    replay::Books books;
    books.before = planned.database;
    books.after = rulebook::Changed(planned.database, planned.change);
    books.holdersOnly = {books.after.holders, books.before.contracts};
    books.rulesOnly = {books.before.holders, books.after.contracts};
    books.changesHolders = !planned.change.holders.empty();
    books.changesContracts = !planned.change.contracts.empty();
    return books;
}

int PrintAnswer(const OptionValues& values, const replay::Answer& answer,
                const replay::Teller& tell)
{
    std::optional<Refusal> failure;
    const std::size_t gone = values.IsOn("json") ? replay::PrintAsJson(answer, tell, failure)
                                                 : replay::PrintInWords(answer, tell);
    if (failure)
    {
        Complain(failure->what());
        return failure->Status();
    }
    if (gone > 0)
    {
        Warn(std::to_string(gone) + " of the orders counted left the history before they could be "
                                    "listed.");
    }
    return answer.findings.changes.empty() ? kDone : kFindings;
}

} // namespace

int RunReplay(const OptionValues& values)
{
    const OptionValue& rules = Required(values, "rules", "--rules rules.toml");
    const replay::AskedWays asked = AskedFrom(values);
    const Conditions conditions = ReplayConditionsFrom(values);
    const Connection connection = ConnectionFrom(values);
    CDatabase database;
    rulebook::PlannedChange planned;
    rulebook::Plan(values, rules, connection, database, planned);
    RequireTable(database, connection, "HST_SIGNRULES", "STATUT");
    const replay::Books books = BooksOf(planned);
    replay::Arbiter arbiter(database, connection, books, asked);
    replay::HistoryWalk history(database, connection, conditions);
    const replay::Findings findings = replay::Replay(history, arbiter);
    return PrintAnswer(values,
                       {planned.checked.name, planned.change.IsEmpty(), findings, arbiter.Asked(),
                        arbiter.Provenance()},
                       [&](const replay::ChangedOrder& change)
                       { return replay::Tell(database, connection, arbiter, change); });
}

} // namespace host
