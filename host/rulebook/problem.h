#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace rulebook
{

/// Something in a file that is not as it must be, or, as a warning, hardly meant so.
struct Problem
{
    std::size_t line = 0;
    std::string field;  ///< "holder.certificates.name"; empty where it is about the line
    std::string what;   ///< a sentence
    std::string remedy; ///< a sentence
    bool isWarning = false;
};

/// All that was found in one file.
class Problems
{
public:
    void Add(Problem problem);

    /// In the order of the file.
    std::vector<Problem> InOrder() const;
    std::size_t Errors() const noexcept { return m_errors; }
    std::size_t Warnings() const noexcept { return m_problems.size() - m_errors; }

private:
    std::vector<Problem> m_problems;
    std::size_t m_errors = 0;
};

/// "rules.toml, line 4, field holder.huid: …"
std::string TextOf(const Problem& problem, const std::string& file);

/// "2 problems, 1 warning"
std::string CountsOf(const Problems& problems);

/// "1 holder", "2 holders"
std::string Counted(std::size_t count, const std::string& what);

} // namespace rulebook
