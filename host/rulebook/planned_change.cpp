#include "host/rulebook/planned_change.h"

#include "database/cdatabase.h"
#include "host/output.h"
#include "host/rulebook/book_reading.h"
#include "host/rulebook/change_text.h"

#include <nlohmann/json.hpp>

namespace rulebook
{

namespace
{

// Each takes two copies and some hundred judgements. Larger changes are made by machines, which
// read no effect; people are told what was left out.
constexpr std::size_t kMostKeys = 20;

} // namespace

void Plan(const host::OptionValues& values, const host::OptionValue& file,
          const host::Connection& connection, CDatabase& database, PlannedChange& planned)
{
    const bool removesOthers = values.IsOn("remove");
    OpenRuleTables(database, connection);
    planned.database = ReadBook(database, connection);
    // What goes cannot be named by rules that stay, nor collide with them.
    planned.checked = CheckRuleFile(file, removesOthers ? nullptr : &planned.database);
    RefuseProblems(planned.checked, "nothing was compared or changed.");
    planned.change = Compare(planned.database, planned.checked.file.book, removesOthers);
}

std::optional<authority::ChangeOfEffect> Show(const host::OptionValues& values, CDatabase& database,
                                              const host::Connection& connection,
                                              const PlannedChange& planned, bool isEffectAsked)
{
    const bool isText = !values.IsOn("json");
    if (isText)
    {
        host::Print(AsText(planned.change));
        host::FlushOutput();
    }
    if (!isEffectAsked)
    {
        return std::nullopt;
    }
    auto effect =
        authority::EffectOf(database, connection, planned.database, planned.change, kMostKeys);
    if (isText)
    {
        host::Print("\n" + authority::AsText(effect));
    }
    return effect;
}

nlohmann::ordered_json AsJson(const BookChange& change,
                              const std::optional<authority::ChangeOfEffect>& effect)
{
    nlohmann::ordered_json object = AsJson(change);
    object["effect"] = nullptr;
    if (effect)
    {
        object["effect"] = authority::AsJson(*effect);
    }
    return object;
}

} // namespace rulebook
