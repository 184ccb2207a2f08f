#include "host/rulebook/planned_change.h"

#include "database/cdatabase.h"
#include "host/rulebook/book_reading.h"

namespace rulebook
{

void Plan(const host::OptionValues& values, const host::Connection& connection, CDatabase& database,
          PlannedChange& planned)
{
    const bool removesOthers = values.IsOn("remove");
    OpenRuleTables(database, connection);
    planned.database = ReadBook(database, connection);
    // Holders who go cannot be named by rules that stay.
    planned.checked = CheckRuleFile(values, removesOthers ? std::set<std::string>()
                                                          : HolderIds(planned.database));
    RefuseProblems(planned.checked, "nothing was compared or changed.");
    planned.change = Compare(planned.database, planned.checked.file.book, removesOthers);
}

} // namespace rulebook
