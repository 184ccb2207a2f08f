#pragma once

#include "host/authority/bands.h"
#include "host/check_request.h"
#include "host/explain/trace_reader.h"
#include "host/explain/words.h"
#include "host/scratch/copy.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <vector>

class CDatabase;

namespace explain
{

/// One check explained, with what would have been accepted where it was not.
struct Explanation
{
    TracedCheck check;
    /// None where the check was accepted or its amounts are not known.
    std::optional<std::vector<authority::Remedy>> remedies;
    std::string provenance; ///< of the remedies
};

/// What the traced check did, and the smallest changes that the library accepts on the copy.
Explanation Explain(scratch::Copy& copy, const authority::RemedyTask& task,
                    const std::string& trace);

/// In the language of the messages.
std::vector<Section> Sections(const Explanation& explanation);
nlohmann::ordered_json AsJson(const Explanation& explanation);

/// Sees to it that a check is traced, and keeps what is traced for its explanation.
class TraceKeeper
{
public:
    /// Where the request names no trace file, it is given one for the time of this object.
    explicit TraceKeeper(host::CheckRequest& request);
    ~TraceKeeper();
    TraceKeeper(const TraceKeeper&) = delete;
    TraceKeeper& operator=(const TraceKeeper&) = delete;

    /// What was traced since, once the trace is closed.
    std::string Text() const;

private:
    std::string m_path;
    bool m_isOwn;
    std::int64_t m_before;
};

/// Explains a check that was run on the database, with the amounts that it was judged on; without
/// them no remedies are looked for. Raises host::Refusal.
Explanation ExplainCheck(CDatabase& database, const host::CheckRequest& request,
                         const std::optional<authority::Amounts>& amounts,
                         const std::string& trace);

} // namespace explain
