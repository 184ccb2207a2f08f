#include "host/rulebook/diff_command.h"

#include "database/cdatabase.h"
#include "host/exit_status.h"
#include "host/output.h"
#include "host/rulebook/planned_change.h"

#include <nlohmann/json.hpp>

namespace rulebook
{

int RunDiff(const host::OptionValues& values)
{
    const host::Connection connection = host::ConnectionFrom(values);
    CDatabase database;
    PlannedChange planned;
    Plan(values, RuleFileArgument(values), connection, database, planned);
    const auto effect = Show(values, database, connection, planned, values.IsOn("effect"));
    if (values.IsOn("json"))
    {
        host::PrintJson(AsJson(planned.change, effect));
    }
    return planned.change.IsEmpty() ? host::kDone : host::kFindings;
}

} // namespace rulebook
