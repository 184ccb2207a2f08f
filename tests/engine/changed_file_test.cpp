#include "engine/convert.h"
#include "engine/failure.h"
#include "engine/order_file.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <system_error>

// An order file that changes while it is converted: after it was opened and before it is read, so
// that no race decides. Each converter must refuse it and leave nothing.

using engine::ConversionMode;
using engine::Failure;
using engine::FailureNumber;
using engine::OrderFile;
using engine::Work;
using testing::HasSubstr;
using testing_support::TemporaryFolder;

namespace
{

struct ChangedCase
{
    const char* name;
    Work work;
    const char* file;
};

void PrintTo(const ChangedCase& changed, std::ostream* stream)
{
    *stream << changed.name;
}

const ChangedCase kCases[] = {
    {"CreditTransfers", Work::Pain001, "pain001_v09.xml"},
    {"DirectDebits", Work::Pain008, "pain008_v02.xml"},
    {"Transfers", Work::Cfonb160, "cfonb160_transfers.txt"},
    {"InternationalTransfers", Work::Cfonb320, "cfonb320_one_currency.txt"},
    {"Messages", Work::Mt101, "mt101_several.txt"},
};

class ChangedFile : public testing::TestWithParam<ChangedCase>
{
protected:
    ChangedFile() : m_bytes(testing_support::ReadWholeFile(Corpus())) {}

    static std::string Corpus()
    {
        return (std::filesystem::path(SIGNUTILS_CORPUS) / GetParam().file).string();
    }

    // Converts the opened file; it must be refused, and neither work file nor trace of one be left.
    void ExpectRefused(OrderFile& file, std::size_t filesLeft)
    {
        try
        {
            engine::Convert(GetParam().work, file, m_order + ".veu",
                            ConversionMode::WriteWorkFiles);
            ADD_FAILURE() << "converted all the same";
        }
        catch (const Failure& failure)
        {
            EXPECT_EQ(failure.Number(), FailureNumber::InputChanged) << failure.Text();
            EXPECT_THAT(failure.Text(), HasSubstr(m_order));
            EXPECT_THAT(failure.Text(), HasSubstr("was changed while it was read"));
        }
        EXPECT_EQ(engine_tests::Names(m_folder.Path()).size(), filesLeft);
    }

    TemporaryFolder m_folder;
    std::string m_bytes;
    std::string m_order = m_folder.Write("order.txt", m_bytes);
};

TEST_P(ChangedFile, ReplacedByOneOfTheSameSizeIsRefused)
{
    OrderFile file(m_order);
    std::error_code refused;
    std::filesystem::rename(m_folder.Write("other.txt", m_bytes), m_order, refused);
    if (refused)
    {
        GTEST_SKIP() << "this system keeps an open file in its place";
    }
    ExpectRefused(file, 1);
}

TEST_P(ChangedFile, CutIsRefusedAsChangedNotAsMalformed)
{
    OrderFile file(m_order);
    std::error_code refused;
    std::filesystem::resize_file(m_order, m_bytes.size() / 2, refused);
    if (refused)
    {
        GTEST_SKIP() << "this system keeps an open file as it is";
    }
    ExpectRefused(file, 1);
}

TEST_P(ChangedFile, WrittenToIsRefused)
{
    OrderFile file(m_order);
    std::ofstream(m_order, std::ios::app | std::ios::binary) << m_bytes;
    ExpectRefused(file, 1);
}

TEST_P(ChangedFile, TakenAwayIsRefused)
{
    OrderFile file(m_order);
    std::error_code refused;
    if (!std::filesystem::remove(m_order, refused) || refused)
    {
        GTEST_SKIP() << "this system keeps an open file in its place";
    }
    ExpectRefused(file, 0);
}

INSTANTIATE_TEST_SUITE_P(Converters, ChangedFile, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
