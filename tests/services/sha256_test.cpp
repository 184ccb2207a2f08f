#include "services/sha256.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

// The published test values of the algorithm.
TEST(Sha256, AgreesWithThePublishedValues)
{
    EXPECT_EQ(services::Sha256Hex(""),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(services::Sha256Hex("abc"),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(services::Sha256Hex("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(services::Sha256Hex(std::string(1000000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256, TakesEveryLengthAroundABlock)
{
    std::string before;
    for (std::size_t length = 54; length <= 66; ++length)
    {
        const std::string hash = services::Sha256Hex(std::string(length, 'x'));
        EXPECT_EQ(hash.size(), 64U);
        EXPECT_NE(hash, before);
        before = hash;
    }
    EXPECT_EQ(services::Sha256Hex(std::string(64, 'a')),
              "ffe054fe7ae0cb6dc65c3af9b61d5209f439851db43d0ba5997337df154668eb");
}

TEST(Sha256, OfPiecesIsThatOfTheWhole)
{
    const std::string whole(1000, 'z');
    for (const std::size_t piece : {1U, 7U, 63U, 64U, 65U, 200U, 1000U})
    {
        services::Sha256 sum;
        for (std::size_t at = 0; at < whole.size(); at += piece)
        {
            sum.Add(std::string_view(whole).substr(at, piece));
            EXPECT_EQ(sum.Hex(), services::Sha256Hex(whole.substr(0, at + piece)));
        }
    }
}

} // namespace
