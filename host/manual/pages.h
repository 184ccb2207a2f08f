#pragma once

#include <string>
#include <vector>

namespace manual
{

/// A manual page of section 1.
struct Page
{
    std::string name; ///< "signcheck-rules-export"
    std::string text; ///< as man reads it
};

/// signcheck(1), and a page for each command.
std::vector<Page> Pages();

} // namespace manual
