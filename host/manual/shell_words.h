#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace manual
{

/// The text in single quotes, as bash and zsh take it.
std::string InSingleQuotes(std::string_view text);

/// The same for fish, whose single quotes know a backslash.
std::string InFishQuotes(std::string_view text);

std::string Joined(const std::vector<std::string>& words);

/// A word that can stand after "signcheck", with what it is about.
struct FirstWord
{
    std::string word;
    std::string summary;
    /// Of a group its commands' own words; empty for a command of one word.
    std::vector<FirstWord> further = {};
};

/// In the order of the help.
std::vector<FirstWord> FirstWords();

} // namespace manual
