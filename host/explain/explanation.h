#pragma once

#include "host/authority/bands.h"
#include "host/check_request.h"
#include "host/explain/outlook.h"
#include "host/explain/trace_reader.h"
#include "host/explain/words.h"
#include "host/scratch/copy.h"
#include "host/scratch/own_trace.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <vector>

class CDatabase;

namespace explain
{

/// One check explained, with what would have been accepted where it was not and what may still
/// become of a distributed order.
struct Explanation
{
    TracedCheck check;
    /// None where the check was accepted or its amounts are not known.
    std::optional<std::vector<authority::Remedy>> remedies;
    std::string obstacle; ///< why there may be other remedies; empty when all are told
    /// Of a distributed order whose amounts are known.
    std::optional<Outlook> outlook;
};

/// What the traced check did, and the smallest changes that the library accepts on the copy, as far
/// as they could be found.
Explanation Explain(scratch::Copy& copy, const authority::RemedyTask& task,
                    const std::string& trace);

/// In the language of the messages.
std::vector<Section> Sections(const Explanation& explanation);
nlohmann::ordered_json AsJson(const Explanation& explanation);

/// Sees to it that a check is traced, and keeps what is traced for its explanation.
class TraceKeeper
{
public:
    /// Where the request names no trace file, it is given one for the time of this object. Signals
    /// do not end the process in that time.
    explicit TraceKeeper(host::CheckRequest& request);

    /// What was traced since, once the trace is closed. Raises host::Refusal when it cannot be
    /// read.
    std::string Text() const;

private:
    std::optional<scratch::OwnTrace> m_own;
    std::string m_path;
    std::int64_t m_before = 0;
};

/// Explains a check that was run on the database, with the amounts that it was judged on; without
/// them neither remedies nor an outlook are looked for.
Explanation ExplainCheck(CDatabase& database, const host::CheckRequest& request,
                         const std::optional<authority::Amounts>& amounts,
                         const std::string& trace);

} // namespace explain
