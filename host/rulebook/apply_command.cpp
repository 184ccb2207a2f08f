#include "host/rulebook/apply_command.h"

#include "database/cdatabase.h"
#include "host/exit_status.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/rulebook/book_update.h"
#include "host/rulebook/planned_change.h"
#include "port/program.h"

#include <nlohmann/json.hpp>

#include <iostream>

namespace rulebook
{

namespace
{

// Refused before anything is read: whoever cannot answer must have agreed.
void RequireAnswer(const host::OptionValues& values)
{
    if (values.IsOn("yes"))
    {
        return;
    }
    if (values.IsOn("json"))
    {
        throw host::UsageRefusal("option --json leaves no room for a question. Look at the "
                                 "difference with signcheck rules diff, then give --yes as well.");
    }
    if (!port::InputIsTerminal())
    {
        throw host::UsageRefusal("standard input is no terminal, so nobody can be asked. Look at "
                                 "the difference with signcheck rules diff, then give --yes.");
    }
}

bool IsAgreed(const host::OptionValues& values)
{
    if (values.IsOn("yes"))
    {
        return true;
    }
    host::Print("Make this change? yes or no: ");
    host::FlushOutput();
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "yes" || answer == "y";
}

int Tell(const host::OptionValues& values, const BookChange& change,
         const std::optional<authority::ChangeOfEffect>& effect, bool isApplied,
         const std::string& text)
{
    if (values.IsOn("json"))
    {
        nlohmann::ordered_json object = AsJson(change, effect);
        object["applied"] = isApplied;
        host::PrintJson(object);
    }
    else
    {
        host::Print(text);
    }
    return isApplied || change.IsEmpty() ? host::kDone : host::kFindings;
}

} // namespace

int RunApply(const host::OptionValues& values)
{
    RequireAnswer(values);
    const host::Connection connection = host::ConnectionFrom(values);
    CDatabase database;
    PlannedChange planned;
    Plan(values, connection, database, planned);
    const BookChange& change = planned.change;
    std::optional<authority::ChangeOfEffect> effect;
    if (!change.IsEmpty())
    {
        effect = EffectOf(database, connection, planned);
    }
    if (!values.IsOn("json"))
    {
        host::Print(AsText(change, effect) + "\n");
        host::FlushOutput();
    }
    if (change.IsEmpty())
    {
        return Tell(values, change, effect, false, "Nothing to change.\n");
    }
    if (!IsAgreed(values))
    {
        return Tell(values, change, effect, false, "Nothing was changed.\n");
    }
    UpdateBook(database, connection, planned.database, change);
    return Tell(values, change, effect, true, "Done: the database holds what the file says.\n");
}

} // namespace rulebook
