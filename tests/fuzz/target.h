#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// What the fuzzing engine calls with each input; every target defines it. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz
{

inline std::string_view View(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// Ends the process with `what` and `where` on standard error when `held` is false: a finding.
void Require(bool held, std::string_view what, std::string_view where = {});

/// A number that depends on every byte: chooses what an input leaves open, such as buffer sizes,
/// the same in every run.
std::uint64_t NumberOf(std::string_view bytes);

} // namespace fuzz
