#pragma once

#include "host/command_table.h"
#include "host/option_values.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace batch
{

/// What may differ from order to order, by the names of the options of check: signers, contract,
/// amounts and identifiers. Where the database lies and where reports go is never among it.
const std::vector<std::string>& TermNames();
bool IsTerm(const std::string& option);

/// Adds one term as it stands in a cell or text. Raises UsageRefusal, led by `place`, for an
/// unknown name.
void AddTerm(const std::string& name, const std::string& text, const std::string& place,
             host::OptionValues& values);

/// The one JSON object of a text that begins on line `firstLine` of the file `name`. Raises
/// UsageRefusal with the line for what is none, and for a key that stands there twice.
nlohmann::json JsonObject(const std::string& text, const std::string& name, std::size_t firstLine);

/// Adds the terms of one JSON object; `leftOut` is a key that is no term. Raises UsageRefusal, led
/// by `place`, for unknown keys and wrong types.
void AddJsonTerms(const nlohmann::json& object, const std::string& place,
                  const std::string& leftOut, host::OptionValues& values);

/// The terms that lie beside an order: one JSON object. Raises UsageRefusal when there is no such
/// file, or with line and field.
host::OptionValues TermsBeside(const std::string& order);

/// Raises UsageRefusal when a status report is asked for and the order's own terms do not name it:
/// every report has an identifier of its own, and says which order it answers.
void RequireOwnReport(const host::OptionValues& own, const host::OptionValues& common);

/// The settings of one order: its own terms go before what holds for all.
host::OptionValues WithCommon(host::OptionValues own, const host::OptionValues& common);

} // namespace batch
