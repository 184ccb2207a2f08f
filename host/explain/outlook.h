#pragma once

#include "host/authority/remedies.h"
#include "host/explain/words.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <vector>

namespace explain
{

/// What may still become of a distributed order.
struct Outlook
{
    /// Whether all its signatures are there or further ones can complete it; none when that was not
    /// found out.
    std::optional<bool> canBeCompleted;
    std::string obstacle; ///< why it was not
};

/// Asks the library, on the copy.
Outlook OutlookOf(scratch::Copy& copy, const authority::RemedyTask& task);

/// What is to be said of an order that nobody can complete.
const char* HopelessInWords(support::Language language);

/// Nothing of an order that can be completed.
std::vector<Section> SectionsOf(const Outlook& outlook, support::Language language);

/// Adds it to an explanation.
void AddTo(nlohmann::ordered_json& object, const std::optional<Outlook>& outlook);

} // namespace explain
