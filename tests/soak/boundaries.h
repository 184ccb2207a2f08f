#pragma once

#include <string>
#include <vector>

namespace soak
{

using BoundaryStop = void (*)(int number, const std::string& what);

/// From now on the connects and statements of this process are counted, from 1. Before the one with
/// the number `stop` is handed to the driver manager, `atStop` is called with "connect" or with the
/// statement's text. One thread at a time.
void WatchBoundaries(int stop, BoundaryStop atStop);
/// What was counted.
std::vector<std::string> UnwatchBoundaries();

} // namespace soak
