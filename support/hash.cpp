#include "support/hash.h"

std::uint32_t GetHashValue(const TSimpleString& text) noexcept
{
    // FNV-1a: spreads short keys that differ in their last letter over a small number of buckets.
    constexpr std::uint32_t kOffset = 2166136261U;
    constexpr std::uint32_t kPrime = 16777619U;
    std::uint32_t hash = kOffset;
    const char* const characters = text.SafeGetString();
    for (std::size_t index = 0; index < text.GetLength(); ++index)
    {
        hash = (hash ^ static_cast<unsigned char>(characters[index])) * kPrime;
    }
    return hash;
}
