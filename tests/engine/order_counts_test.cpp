#include "engine/convert.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <vector>

// The work file that tells how many orders each remittance has: whoever walks the orders needs it
// to see where one remittance ends and the next begins.

using engine::Work;
using engine_tests::Fields;
using testing::ElementsAre;
using testing_support::TemporaryFolder;

namespace
{

struct CountsCase
{
    const char* name;
    const char* file;
    Work work;
    std::vector<Fields> rows;
};

void PrintTo(const CountsCase& counts, std::ostream* stream)
{
    *stream << counts.name;
}

const CountsCase kCountsCases[] = {
    {"PaymentGroups",
     "pain001_groups.xml",
     Work::Pain001,
     {{"1", "1", "30.00", "EUR", "2"},
      {"2", "1", "30.00", "EUR", "1"},
      {"3", "1", "40.00", "EUR", "1"},
      {"*", "1", "100.00", "EUR", "4"}}},
    {"CurrenciesOfOneGroup",
     "pain001_currencies.xml",
     Work::Pain001,
     {{"1", "1", "25.00", "CHF", "1"},
      {"1", "1", "100.00", "EUR", "1"},
      {"1", "1", "51.00", "USD", "2"},
      {"*", "1", "25.00", "CHF", "1"},
      {"*", "1", "100.00", "EUR", "1"},
      {"*", "1", "51.00", "USD", "2"}}},
    {"RecordsOfFixedWidth",
     "cfonb160_remittances.txt",
     Work::Cfonb160,
     {{"1", "1", "1.00", "EUR", "1"},
      {"4", "1", "2.00", "EUR", "1"},
      {"7", "1", "3.00", "EUR", "1"},
      {"*", "1", "6.00", "EUR", "3"}}},
    {"Messages",
     "mt101_several.txt",
     Work::Mt101,
     {{"1", "1", "1.00", "EUR", "1"},
      {"2", "1", "1000", "JPY", "1"},
      {"*", "1", "1.00", "EUR", "1"},
      {"*", "1", "1000", "JPY", "1"}}},
    {"EmptyGroupHasNoRow",
     "pain001_empty_group.xml",
     Work::Pain001,
     {{"2", "1", "2.00", "EUR", "1"}, {"*", "1", "2.00", "EUR", "1"}}},
};

class OrderCounts : public testing::TestWithParam<CountsCase>
{
};

} // namespace

TEST_P(OrderCounts, StandWithEachRemittanceAndWithTheFile)
{
    const TemporaryFolder folder;
    const std::string order = folder.Path(GetParam().file);
    std::filesystem::copy_file(std::filesystem::path(SIGNUTILS_CORPUS) / GetParam().file, order);

    engine::Convert(GetParam().work, order, order + ".veu");

    EXPECT_EQ(engine_tests::ReadRows(order + ".veu.tot", 4), GetParam().rows);
}

INSTANTIATE_TEST_SUITE_P(Files, OrderCounts, testing::ValuesIn(kCountsCases),
                         [](const auto& test) { return std::string(test.param.name); });
