#include "services/sha256.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace services
{

namespace
{

constexpr std::size_t kBlock = 64;

constexpr std::array<std::uint32_t, kBlock> kRounds = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

std::array<std::uint32_t, kBlock> Schedule(std::string_view block)
{
    std::array<std::uint32_t, kBlock> words{};
    for (std::size_t index = 0; index < 16; ++index)
    {
        for (std::size_t byte = 0; byte < 4; ++byte)
        {
            words[index] =
                (words[index] << 8U) | static_cast<unsigned char>(block[4 * index + byte]);
        }
    }
    for (std::size_t index = 16; index < words.size(); ++index)
    {
        const std::uint32_t early = words[index - 15];
        const std::uint32_t late = words[index - 2];
        words[index] = words[index - 16] + words[index - 7] +
                       (std::rotr(early, 7) ^ std::rotr(early, 18) ^ (early >> 3U)) +
                       (std::rotr(late, 17) ^ std::rotr(late, 19) ^ (late >> 10U));
    }
    return words;
}

/// The end of the message: what is left of it, a set bit, zeroes, and its length in bits.
std::string PaddedEnd(std::string_view rest, std::uint64_t messageSize)
{
    std::string end(rest);
    end += '\x80';
    while (end.size() % kBlock != kBlock - 8)
    {
        end += '\0';
    }
    const std::uint64_t bits = messageSize * 8;
    for (unsigned int shift = 64; shift > 0; shift -= 8)
    {
        end += static_cast<char>((bits >> (shift - 8)) & 0xFFU);
    }
    return end;
}

} // namespace

void Sha256::AddBlock(State& state, std::string_view block)
{
    const std::array<std::uint32_t, kBlock> words = Schedule(block);
    auto [a, b, c, d, e, f, g, h] = state;
    for (std::size_t index = 0; index < words.size(); ++index)
    {
        const std::uint32_t first = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) +
                                    ((e & f) ^ (~e & g)) + kRounds[index] + words[index];
        const std::uint32_t second =
            (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + second;
    }
    const State added = {a, b, c, d, e, f, g, h};
    for (std::size_t index = 0; index < state.size(); ++index)
    {
        state[index] += added[index];
    }
}

void Sha256::Add(std::string_view bytes)
{
    m_size += bytes.size();
    if (!m_rest.empty())
    {
        const std::size_t taken = std::min(kBlock - m_rest.size(), bytes.size());
        m_rest += bytes.substr(0, taken);
        bytes.remove_prefix(taken);
        if (m_rest.size() < kBlock)
        {
            return;
        }
        AddBlock(m_state, m_rest);
        m_rest.clear();
    }
    for (; bytes.size() >= kBlock; bytes.remove_prefix(kBlock))
    {
        AddBlock(m_state, bytes.substr(0, kBlock));
    }
    m_rest = bytes;
}

std::string Sha256::Hex() const
{
    State state = m_state;
    const std::string end = PaddedEnd(m_rest, m_size);
    for (std::size_t at = 0; at < end.size(); at += kBlock)
    {
        AddBlock(state, std::string_view(end).substr(at, kBlock));
    }
    constexpr std::string_view kHexDigits = "0123456789abcdef";
    std::string digits(2 * sizeof state, '0');
    auto digit = digits.begin();
    for (const std::uint32_t word : state)
    {
        for (unsigned int shift = 32; shift > 0; shift -= 4)
        {
            *digit++ = kHexDigits[(word >> (shift - 4)) & 0xFU];
        }
    }
    return digits;
}

std::string Sha256Hex(std::string_view bytes)
{
    Sha256 sum;
    sum.Add(bytes);
    return sum.Hex();
}

} // namespace services
