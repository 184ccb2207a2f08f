#include "engine/convert.h"
#include "engine/failure.h"
#include "tests/engine/corpus_table.h"
#include "tests/engine/decimal_text.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

using engine_tests::Fields;
using engine_tests::Normal;

namespace
{

constexpr std::size_t kFourLinesOfCorpus = 4;
constexpr std::size_t kOneLineOfCorpus = 1;

class Corpus : public testing::TestWithParam<CorpusCase>
{
};

} // namespace

TEST_P(Corpus, GivesItsTotalsAndErrors)
{
    const CorpusCase& expected = GetParam();
    const testing_support::TemporaryFolder folder;
    const std::string order = folder.Path(expected.file);
    std::filesystem::copy_file(std::filesystem::path(SIGNUTILS_CORPUS) / expected.file, order);
    engine::Work work{};
    ASSERT_TRUE(engine::FindWork(expected.format1, expected.format2, work));

    try
    {
        engine::Convert(work, order, order + ".veu");
    }
    catch (const engine::Failure& failure)
    {
        FAIL() << failure.Text();
    }

    std::string total = "0";
    for (const Fields& row : engine_tests::ReadRows(order + ".veu.bp", kFourLinesOfCorpus))
    {
        ASSERT_EQ(row.size(), 4U);
        total = engine_tests::Sum(total, row[2]);
    }
    EXPECT_EQ(Normal(total), Normal(expected.total));

    std::string largest = "0";
    const auto orders = engine_tests::ReadRows(order + ".veu.cp", kFourLinesOfCorpus);
    for (const Fields& row : orders)
    {
        ASSERT_EQ(row.size(), 18U);
        EXPECT_FALSE(row[1].empty());
        EXPECT_EQ(row[4], row[16]);
        largest = engine_tests::Larger(largest, row[4]);
    }
    EXPECT_EQ(Normal(largest), Normal(expected.largest));
    EXPECT_EQ(orders.size(), static_cast<std::size_t>(expected.orders));

    std::string errors;
    for (const Fields& row : engine_tests::ReadRows(order + ".veu.err", kOneLineOfCorpus))
    {
        ASSERT_EQ(row.size(), 5U);
        EXPECT_FALSE(row[0].empty());
        errors += (errors.empty() ? "" : ",") + row[3];
    }
    EXPECT_EQ(errors, expected.errors);
    EXPECT_EQ(engine_tests::Names(folder.Path()).size(), 7U) << "the order and six work files";
}

INSTANTIATE_TEST_SUITE_P(Files, Corpus, testing::ValuesIn(kCorpus),
                         [](const testing::TestParamInfo<CorpusCase>& test)
                         {
                             std::string name = test.param.file;
                             name.erase(name.rfind('.'));
                             return name;
                         });

TEST(CorpusFolder, EveryFileHasItsRow)
{
    std::vector<std::string> listed;
    for (const CorpusCase& corpusCase : kCorpus)
    {
        listed.emplace_back(corpusCase.file);
    }
    std::sort(listed.begin(), listed.end());
    EXPECT_EQ(engine_tests::Names(SIGNUTILS_CORPUS), listed);
}
