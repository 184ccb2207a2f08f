#pragma once

#include "host/authority/lint.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace authority
{

/// What was found about one kind of order.
struct LintedKind
{
    std::string cuid;
    std::string kind; ///< "order type 1 of partner …"
    std::vector<Finding> findings;
};

/// For a terminal of 80 columns.
std::string AsText(const LintedKind& linted);
nlohmann::ordered_json AsJson(const LintedKind& linted);

} // namespace authority
