#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace port
{

/// How many bytes one mask tells of.
inline constexpr std::size_t kMaskWidth = 64;

/// A bit for each of `length` bytes, kMaskWidth at most, that is `byte`; the lowest bit is the
/// first byte's. For bytes that follow closely on each other, where a search for each one costs a
/// call.
inline std::uint64_t PlainByteMask(const char* bytes, std::size_t length, char byte) noexcept
{
    std::uint64_t mask = 0;
    for (std::size_t i = 0; i < length; ++i)
    {
        mask |= std::uint64_t{bytes[i] == byte} << i;
    }
    return mask;
}

/// The same with what the processor has for it.
inline std::uint64_t ByteMask(const char* bytes, std::size_t length, char byte) noexcept
{
#if defined(__SSE2__)
    constexpr std::size_t kStep = sizeof(__m128i);
    const __m128i wanted = _mm_set1_epi8(byte);
    const auto maskAt = [&](std::size_t position)
    {
        const auto* const from = reinterpret_cast<const __m128i*>(bytes + position);
        const __m128i equal = _mm_cmpeq_epi8(_mm_loadu_si128(from), wanted);
        return std::uint64_t{static_cast<std::uint16_t>(_mm_movemask_epi8(equal))} << position;
    };
    if (length == kMaskWidth)
    {
        return maskAt(0) | maskAt(kStep) | maskAt(2U * kStep) | maskAt(3U * kStep);
    }
    if (length >= kStep)
    {
        // The last step may overlap the one before it.
        std::uint64_t mask = maskAt(length - kStep);
        for (std::size_t position = 0; position + kStep < length; position += kStep)
        {
            mask |= maskAt(position);
        }
        return mask;
    }
#endif
    return PlainByteMask(bytes, length, byte);
}

} // namespace port
