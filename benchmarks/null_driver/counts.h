#pragma once

#include <cstddef>
#include <cstdint>

namespace null_driver
{

/// What programs asked the driver for since it was loaded.
struct Counts
{
    std::uint64_t connects = 0;
    std::uint64_t statements = 0;
    std::uint64_t fetches = 0;
    std::uint64_t bindings = 0; ///< columns bound
    std::uint64_t metadata = 0; ///< questions about columns, tables and types
    std::uint64_t values = 0;   ///< columns asked for on their own
};

/// Receives each statement in its order. A thread that runs statements calls it.
using Watcher = void (*)(const char16_t* statement, std::size_t length, void* context);

// The names under which the driver gives these two functions to a program that has loaded it.
inline constexpr char kReadCounts[] = "SignUtilsNullDriverCounts";
inline constexpr char kWatch[] = "SignUtilsNullDriverWatch";
using ReadCounts = void (*)(Counts* counts);
/// Null: nobody watches.
using Watch = void (*)(Watcher watcher, void* context);

} // namespace null_driver
