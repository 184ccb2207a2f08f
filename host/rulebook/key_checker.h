#pragma once

#include "host/rulebook/text_checks.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>

namespace rulebook
{

/// Identifiers of holders or contracts: each stands once, and in one letter case only, since those
/// that differ in it are two to a check and one to whoever reads them.
class KeyChecker
{
public:
    /// `what`: "holder". `database`: those that stay there beside the file's. All are referred to.
    KeyChecker(FileChecker& checker, const char* what, const std::set<std::string>& database);

    void Check(const std::string& path, const std::string& key);

private:
    struct First
    {
        std::string key;
        std::string place; ///< "of line 3", "of the database"
    };

    FileChecker& m_checker;
    const char* m_what;
    std::map<std::string, std::size_t> m_lines; // where a key stood first
    std::map<std::u32string, First> m_inLowerCase;
};

} // namespace rulebook
