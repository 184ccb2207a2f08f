#pragma once

#include <string>
#include <vector>

namespace doctor
{

enum class Outcome
{
    Ok,
    Warning,
    Failed,
    NotLooked, ///< with the reason in place of what was found
};

/// What one look at the installation told. Texts are UTF-8.
struct Finding
{
    std::string check; ///< "driver", "tables"
    Outcome outcome = Outcome::Ok;
    std::string found;
    std::string remedy; ///< a sentence or two; empty where nothing is to be done
};

using Findings = std::vector<Finding>;

} // namespace doctor
