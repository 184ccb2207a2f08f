#pragma once

#include "host/authority/remedies.h"
#include "host/explain/trace_reader.h"
#include "support/messages.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace explain
{

/// One thing said, such as what a rule asks. A line without a label goes on with the one before.
struct Told
{
    std::string label;
    std::string words;
};

/// What is said of the whole check, which has no title, or of one rule.
struct Section
{
    std::string title;
    std::vector<Told> lines;
};

/// A check rule by rule, in plain words.
std::vector<Section> Sections(const TracedCheck& check, support::Language language);

/// What would have been accepted instead. `obstacle`: why there may be more; empty when all is
/// told.
Section SectionOf(const std::vector<authority::Remedy>& remedies, const std::string& obstacle,
                  support::Language language);

/// The obstacle of a search that a signal has ended.
const char* InterruptedSearch(support::Language language);

/// For a terminal of 80 columns.
std::string AsText(const std::vector<Section>& sections);

/// One page that needs nothing else.
std::string AsHtml(const std::vector<Section>& sections, support::Language language);

nlohmann::ordered_json AsJson(const TracedCheck& check);
nlohmann::ordered_json AsJson(const std::vector<authority::Remedy>& remedies);

} // namespace explain
