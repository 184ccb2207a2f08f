#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host
{

/// The candidate that a mistyped word most likely meant; empty when none is near.
std::string Nearest(std::string_view word, const std::vector<std::string>& candidates);

/// " Did you mean --partner?", or nothing. `prefix` stands before the candidate.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates,
                       std::string_view prefix);

} // namespace host
