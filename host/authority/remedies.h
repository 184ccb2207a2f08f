#pragma once

#include "host/authority/parties.h"
#include "host/scratch/copy.h"
#include "host/scratch/judge.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace authority
{

/// Changes that, made together, turn a decision into an acceptance.
struct Remedy
{
    std::vector<std::string> furtherSigners; ///< certificate names
    std::vector<std::string> furtherLabels;  ///< whose they are
    std::optional<double> totalAtMost;
    std::optional<double> largestAtMost;
    std::vector<std::string> freedHuids; ///< opposition of these holders lifted
    std::vector<std::string> freedLabels;
    std::vector<std::string> activeContracts; ///< opposition of these contracts lifted
};

/// What is asked for: an order that was not accepted.
struct RemedyTask
{
    const rulebook::RuleBook& book; ///< what the copy holds
    scratch::OrderKind kind;
    scratch::Order order;
};

/// Adds the smallest remedies, of at most three changes, to `found`: the library accepts each on
/// the copy, and no part of one is accepted. Amounts are the greatest limits that do. The copy
/// holds the book again at the end. Raises host::Refusal; what was found before stands.
void FindRemedies(scratch::Copy& copy, const RemedyTask& task, std::vector<Remedy>& found);

/// The order and the book with the changes made.
scratch::Order Changed(scratch::Order order, const Remedy& remedy);
rulebook::RuleBook Changed(rulebook::RuleBook book, const Remedy& remedy);

} // namespace authority
