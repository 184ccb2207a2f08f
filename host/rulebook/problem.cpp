#include "host/rulebook/problem.h"

#include <algorithm>
#include <utility>

namespace rulebook
{

void Problems::Add(Problem problem)
{
    m_errors += problem.isWarning ? 0 : 1;
    m_problems.push_back(std::move(problem));
}

std::vector<Problem> Problems::InOrder() const
{
    std::vector<Problem> ordered = m_problems;
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const Problem& left, const Problem& right)
                     { return left.line < right.line; });
    return ordered;
}

std::string TextOf(const Problem& problem, const std::string& file)
{
    return file + ", line " + std::to_string(problem.line) +
           (problem.field.empty() ? "" : ", field " + problem.field) + ": " +
           (problem.isWarning ? "WARNING: " : "") + problem.what + " " + problem.remedy;
}

std::string CountsOf(const Problems& problems)
{
    return Counted(problems.Errors(), "problem") + ", " + Counted(problems.Warnings(), "warning");
}

std::string Counted(std::size_t count, const std::string& what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

} // namespace rulebook
