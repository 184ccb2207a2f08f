#pragma once

#include <string>
#include <vector>

namespace host
{

/// Sees to it that a check leaves no work file beside its order file, also when it is cut short by
/// an error. Work files that were there before are somebody else's and stay, unless the conversion
/// itself replaces them.
class WorkFileGuard
{
public:
    /// `order` is the order file's path, Windows-1252.
    explicit WorkFileGuard(const std::string& order);
    ~WorkFileGuard();
    WorkFileGuard(const WorkFileGuard&) = delete;
    WorkFileGuard& operator=(const WorkFileGuard&) = delete;

    /// What was there before, to be told before it is replaced; empty when nothing was.
    std::string Warning() const;

private:
    std::vector<std::string> m_before;
    std::vector<std::string> m_others; ///< paths of work files that were not there
};

} // namespace host
