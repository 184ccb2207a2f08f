#include "support/protocol_catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <thread>
#include <vector>

namespace
{

constexpr unsigned long kHostProtocol = 4711;

std::string LongName(unsigned long protocol)
{
    return TProtocolCatalogue().GetProtocolLongName(protocol).SafeGetString();
}

std::map<unsigned long, std::string> All()
{
    std::map<unsigned long, std::string> all;
    unsigned long number = 0;
    TSimpleString name;
    for (int i = 0; TProtocolCatalogue::GetAt(i, number, name); ++i)
    {
        EXPECT_TRUE(all.empty() || all.rbegin()->first < number) << "numbers rise";
        all[number] = name.SafeGetString();
    }
    return all;
}

/// Takes the host's entries away at the end.
class ProtocolCatalogue : public testing::Test
{
protected:
    ~ProtocolCatalogue() override
    {
        TProtocolCatalogue::Register(kHostProtocol, nullptr);
        TProtocolCatalogue::Register(9, nullptr);
    }
};

TEST_F(ProtocolCatalogue, KnowsTheBankProtocols)
{
    EXPECT_EQ(LongName(1), "ETEBAC 3");
    EXPECT_EQ(LongName(3), "PeSIT");
    EXPECT_EQ(LongName(4), "SWIFTNet FileAct");
    EXPECT_EQ(LongName(9), "EBICS 2.5 (EBICS T and TS)");
    EXPECT_EQ(LongName(10), "EBICS 3.0");
}

TEST_F(ProtocolCatalogue, UnknownNumbersHaveNoName)
{
    EXPECT_EQ(LongName(0), "");
    EXPECT_EQ(LongName(4711), "");
    EXPECT_EQ(LongName(0xFFFFFFFFUL), "");
}

TEST_F(ProtocolCatalogue, NamesThatComeAlongHaveAtMost63Characters)
{
    const auto all = All();
    EXPECT_GE(all.size(), 20U);
    for (const auto& [number, name] : all)
    {
        EXPECT_FALSE(name.empty()) << number;
        EXPECT_LE(name.size(), 63U) << number;
        EXPECT_EQ(LongName(number), name);
    }
}

TEST_F(ProtocolCatalogue, TheHostAddsAProtocol)
{
    const std::size_t before = All().size();
    TProtocolCatalogue::Register(kHostProtocol, "House protocol");
    EXPECT_EQ(LongName(kHostProtocol), "House protocol");
    EXPECT_EQ(All().size(), before + 1);
    TProtocolCatalogue::Register(kHostProtocol, "Renamed");
    EXPECT_EQ(LongName(kHostProtocol), "Renamed");
    TProtocolCatalogue::Register(kHostProtocol, "");
    EXPECT_EQ(LongName(kHostProtocol), "");
    EXPECT_EQ(All().size(), before);
}

TEST_F(ProtocolCatalogue, TheHostRenamesAProtocolAndTakesTheNameBack)
{
    const std::size_t before = All().size();
    TProtocolCatalogue::Register(9, "EBICS of the house");
    EXPECT_EQ(LongName(9), "EBICS of the house");
    EXPECT_EQ(All().at(9), "EBICS of the house");
    TProtocolCatalogue::Register(9, nullptr);
    EXPECT_EQ(LongName(9), "EBICS 2.5 (EBICS T and TS)");
    EXPECT_EQ(All().size(), before);
}

TEST_F(ProtocolCatalogue, PositionsOutsideTheTableAreRefused)
{
    unsigned long number = 77;
    TSimpleString name("kept");
    EXPECT_FALSE(TProtocolCatalogue::GetAt(-1, number, name));
    EXPECT_FALSE(TProtocolCatalogue::GetAt(static_cast<int>(All().size()), number, name));
    EXPECT_EQ(number, 77UL);
    EXPECT_STREQ(name.SafeGetString(), "kept");
}

TEST_F(ProtocolCatalogue, NumbersCountByTheirLow32Bits)
{
    if (sizeof(unsigned long) == 4)
    {
        GTEST_SKIP() << "a long has no more bits here";
    }
    EXPECT_EQ(LongName(static_cast<unsigned long>(0x100000009ULL)), LongName(9));
}

TEST_F(ProtocolCatalogue, ThreadsMayRegisterAndAsk)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
    {
        threads.emplace_back(
            []
            {
                for (int round = 0; round < 200; ++round)
                {
                    TProtocolCatalogue::Register(kHostProtocol, "House protocol");
                    EXPECT_EQ(LongName(kHostProtocol), "House protocol");
                    EXPECT_EQ(LongName(10), "EBICS 3.0");
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
}

} // namespace
