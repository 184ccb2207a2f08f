#pragma once

#include <cstdint>

namespace containers
{

/// Milliseconds of a 32-bit counter that wraps, as GetTickCount gives them.
using TickSource = std::uint32_t (*)();

/// Replaces the system's tick counter for every keyed table, so that ageing is tested without
/// waiting; null puts it back.
void SetTickSource(TickSource source) noexcept;

/// The counter now.
std::uint32_t CurrentTick() noexcept;

/// Age of a stamp. On a counter that wrapped since, the age is one millisecond less than the true
/// one, on purpose: purges have always been timed so.
constexpr std::uint32_t AgeOf(std::uint32_t stamp, std::uint32_t now) noexcept
{
    return stamp > now ? now - stamp - 1U : now - stamp;
}

} // namespace containers
