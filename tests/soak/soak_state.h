#pragma once

#include <cstdint>
#include <string>

namespace soak
{

/// What a long run has done so far; kept beside the database, so that a stopped run goes on.
struct State
{
    std::int64_t milliseconds = 0;
    std::int64_t checks = 0;
    std::int64_t rows = 0;   ///< history rows that the checks owe
    std::int64_t events = 0; ///< audit events that the checks owe
};

/// The state in a file, a fresh one when there is none.
State LoadState(const std::string& path);
/// Writes beside the file and moves it there, so that a kill leaves the old or the new.
void SaveState(const std::string& path, const State& state);

/// What the process holds at the moment.
struct Footprint
{
    std::int64_t residentKib = 0;
    std::int64_t openFiles = 0;
};
Footprint MeasureFootprint();

} // namespace soak
