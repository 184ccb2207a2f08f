#pragma once

#include "host/rulebook/book_change.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace rulebook
{

/// The change as people read it: a paragraph for each holder and contract with the lines of a rule
/// file that go (-) and come (+), and the counts at the end.
std::string AsText(const BookChange& change);

nlohmann::ordered_json AsJson(const BookChange& change);

} // namespace rulebook
