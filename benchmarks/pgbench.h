#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace benchmarks
{

/// Prints how many checks a second pgbench comes to with the same statements, on the PostgreSQL
/// that the connection string names, with so many clients and so many checks of each; or why it
/// does not. It opens one connection a client, where a check has three.
void PrintPgbench(const std::string& connexionString, const std::vector<std::u16string>& statements,
                  std::size_t clients, std::uint64_t checksOfEach);

} // namespace benchmarks
