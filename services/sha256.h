#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace services
{

/// The SHA-256 of bytes that come piece by piece.
class Sha256
{
public:
    void Add(std::string_view bytes);

    /// Of all bytes so far, as 64 small hexadecimal digits.
    std::string Hex() const;

private:
    using State = std::array<std::uint32_t, 8>;
    static constexpr State kStart = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                     0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

    static void AddBlock(State& state, std::string_view block);

    State m_state = kStart;
    std::string m_rest; ///< less than a block
    std::uint64_t m_size = 0;
};

/// The SHA-256 of the bytes as 64 small hexadecimal digits.
std::string Sha256Hex(std::string_view bytes);

} // namespace services
