#include "port/byte_mask.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace
{

TEST(ByteMask, BitsAreThoseOfTheBytes)
{
    EXPECT_EQ(port::ByteMask("", 0, '"'), 0U);
    EXPECT_EQ(port::ByteMask("\"a\"\"", 4, '"'), 0b1101U);
    EXPECT_EQ(port::ByteMask("\"a\"\"", 3, '"'), 0b101U) << "nothing behind the length counts";
}

TEST(ByteMask, EveryLengthAndPlaceGivesThePlainAnswer)
{
    for (std::size_t length = 1; length <= port::kMaskWidth; ++length)
    {
        for (std::size_t place = 0; place < length; ++place)
        {
            std::string bytes(length, '\xA2');
            bytes[place] = '"';
            bytes[length / 2U] = '"';
            const std::uint64_t mask = port::ByteMask(bytes.data(), length, '"');
            ASSERT_EQ(mask, port::PlainByteMask(bytes.data(), length, '"'))
                << length << ' ' << place;
            ASSERT_EQ(mask >> place & 1U, 1U);
        }
    }
}

TEST(ByteMask, OfEqualBytesAllBitsAreSet)
{
    const std::string bytes(port::kMaskWidth, '\xFF');
    EXPECT_EQ(port::ByteMask(bytes.data(), bytes.size(), '\xFF'), ~std::uint64_t{0});
    EXPECT_EQ(port::ByteMask(bytes.data(), 63, '\xFF'), ~std::uint64_t{0} >> 1U);
}

} // namespace
