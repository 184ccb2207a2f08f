#pragma once

#include "host/rulebook/problem.h"
#include "host/rulebook/rule_book.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace rulebook
{

/// Where the parts of a book stand in their file, by path: "holder[0]",
/// "contract[2].rules[1].amount". Counting starts at 0.
class Places
{
public:
    void Add(const std::string& path, std::size_t line);

    bool Has(const std::string& path) const;

    /// The line of the part, or of what it stands in where it has none of its own.
    std::size_t LineOf(std::string path) const;

    /// The path without the places in lists: "contract.rules.amount".
    static std::string FieldOf(std::string_view path);
    static std::string Item(const std::string& list, std::size_t index);

private:
    std::unordered_map<std::string, std::size_t> m_lines;
};

/// A rule book as it stands in a file.
struct RuleFile
{
    RuleBook book;
    Places places;
};

/// Reads TOML, UTF-8. What has the wrong type, is unknown or missing becomes a problem and the rest
/// is read on; only where the text is no TOML at all reading ends there.
RuleFile ReadRuleFile(std::string_view toml, Problems& problems);

} // namespace rulebook
