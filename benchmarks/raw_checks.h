#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace benchmarks
{

/// The floor of a whole check: bare ODBC calls that run a check's statements, with wide calls, on
/// connections that stay open, each query shape bound once to columns of the lengths that the
/// tables have. Raises std::runtime_error when a call fails.
class RawChecks
{
public:
    /// Opens the connections of rules, history and journal.
    RawChecks(const std::string& connexionString, const std::vector<std::u16string>& statements);
    ~RawChecks();
    RawChecks(const RawChecks&) = delete;
    RawChecks& operator=(const RawChecks&) = delete;

    /// Runs every statement once, each query to the end of its rows; the number of rows.
    std::uint64_t RunOnce();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace benchmarks
