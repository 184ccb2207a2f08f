#include "tests/fuzz/target.h"

#include <cstdio>
#include <cstdlib>

namespace fuzz
{

void Require(bool held, std::string_view what, std::string_view where)
{
    if (!held)
    {
        std::fprintf(stderr, "Finding: %.*s%.*s\n", static_cast<int>(what.size()), what.data(),
                     static_cast<int>(where.size()), where.data());
        std::abort();
    }
}

std::uint64_t NumberOf(std::string_view bytes)
{
    constexpr std::uint64_t kStart = 14695981039346656037U;
    constexpr std::uint64_t kPrime = 1099511628211U;
    std::uint64_t number = kStart;
    for (const char byte : bytes)
    {
        number = (number ^ static_cast<unsigned char>(byte)) * kPrime;
    }
    // The lowest bits depend on few of the bytes' bits.
    return number ^ (number >> 32U);
}

} // namespace fuzz
