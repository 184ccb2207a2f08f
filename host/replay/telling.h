#pragma once

#include "host/refusal.h"
#include "host/replay/changes.h"

#include <functional>
#include <optional>
#include <string>

namespace replay
{

/// What a replay was asked and what it found.
struct Answer
{
    std::string rules;        ///< name of the rule file
    bool isUnchanged = false; ///< the file changes nothing
    const Findings& findings;
    std::size_t judged = 0;
    std::string provenance;
};

/// Gives what is told of a changed order; none when it has left the history.
using Teller = std::function<std::optional<ToldOrder>(const ChangedOrder& change)>;

/// Print the answer, order by order, for a terminal of 80 columns or as one JSON object, and return
/// how many changed orders had left the history.
std::size_t PrintInWords(const Answer& answer, const Teller& tell);

/// A host::Refusal of `tell` becomes a member of the object, which is ended; `failure` has it then.
std::size_t PrintAsJson(const Answer& answer, const Teller& tell,
                        std::optional<host::Refusal>& failure);

} // namespace replay
