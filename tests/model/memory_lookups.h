#pragma once

#include "tests/model/tables.h"

namespace model
{

/// The tables that the holder look-ups of this program answer from, in the place of a database.
void AnswerLookupsFrom(const Tables& tables);

} // namespace model
