#include "host/rulebook/apply_command.h"

#include "database/cdatabase.h"
#include "host/exit_status.h"
#include "host/output.h"
#include "host/question.h"
#include "host/rulebook/book_update.h"
#include "host/rulebook/planned_change.h"

#include <nlohmann/json.hpp>

namespace rulebook
{

namespace
{

constexpr const char* kLookFirst = "Look at the difference with signcheck rules diff";

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
    host::RequireAnswer(values, kLookFirst); // before anything is read
    const host::Connection connection = host::ConnectionFrom(values);
    CDatabase database;
    PlannedChange planned;
    Plan(values, RuleFileArgument(values), connection, database, planned);
    const BookChange& change = planned.change;
    const auto effect =
        Show(values, database, connection, planned, !change.IsEmpty() && !values.IsOn("no-effect"));
    if (!values.IsOn("json"))
    {
        host::Print("\n");
        host::FlushOutput();
    }
    if (change.IsEmpty())
    {
        return Tell(values, change, effect, false, "Nothing to change.\n");
    }
    if (!host::IsAgreed(values, "Make this change?"))
    {
        return Tell(values, change, effect, false, "Nothing was changed.\n");
    }
    UpdateBook(database, connection, planned.database, change);
    return Tell(values, change, effect, true, "Done: the database holds what the file says.\n");
}

} // namespace rulebook
