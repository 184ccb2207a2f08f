#pragma once

#include "host/authority/change_of_effect.h"
#include "host/connection.h"
#include "host/option_values.h"
#include "host/rulebook/book_change.h"
#include "host/rulebook/checked_file.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>

class CDatabase;

namespace rulebook
{

/// A rule file against a database; `change` refers to the other two.
struct PlannedChange
{
    PlannedChange() = default;
    PlannedChange(const PlannedChange&) = delete;
    PlannedChange& operator=(const PlannedChange&) = delete;

    RuleBook database;
    CheckedFile checked;
    BookChange change;
};

/// Opens the database, reads it and the rule file, and compares them; --remove takes away what the
/// file does not name. Problems of the file are told on standard error. Raises Refusal.
void Plan(const host::OptionValues& values, const host::OptionValue& file,
          const host::Connection& connection, CDatabase& database, PlannedChange& planned);

/// Prints the change and, where `isEffectAsked`, what it does, which may take long: the change is
/// there before. With --json nothing is printed. Returns what was worked out. Raises Refusal.
std::optional<authority::ChangeOfEffect> Show(const host::OptionValues& values, CDatabase& database,
                                              const host::Connection& connection,
                                              const PlannedChange& planned, bool isEffectAsked);

/// The change and, where it was worked out, its effect.
nlohmann::ordered_json AsJson(const BookChange& change,
                              const std::optional<authority::ChangeOfEffect>& effect);

} // namespace rulebook
