// Runs whose lines nobody can read: a device that is always full.

#include "tests/host/batch/batch_world.h"
#include "tests/testing/platform.h"

#include <gmock/gmock.h>

namespace testing_support
{
namespace
{

using testing::HasSubstr;
using testing::SizeIs;

class PosixFullOutput : public BatchTest
{
protected:
    int BatchToFullDevice(const std::vector<std::string>& more)
    {
        auto arguments = CheckOfFile(m_orders.Path(), "auto", "Élodie Lefèvre");
        arguments[0] = "batch";
        arguments.insert(arguments.end(), {"--jobs", "1"});
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunProgram(SIGNCHECK_PROGRAM, arguments, "/dev/full", m_folder.Path("errors"));
    }
};

TEST_F(PosixFullOutput, EndsTheRunWithTheOrderWhoseLineIsLost)
{
    for (const char* const name : {"A001.xml", "A002.xml", "A003.xml"})
    {
        Order(name);
    }

    EXPECT_EQ(BatchToFullDevice({"--json"}), 3);

    EXPECT_THAT(ReadWholeFile(m_folder.Path("errors")),
                HasSubstr("standard output cannot be written, so the run ends here"));
    EXPECT_THAT(ReadWholeFile(m_folder.Path("errors")), HasSubstr("signcheck history"));
    EXPECT_THAT(Rows(), SizeIs(1));
    const auto summary = Lines(Batch({"--json"})).at("")["summary"];
    EXPECT_EQ(summary["judgedBefore"], 1);
    EXPECT_EQ(summary["accepted"], 2);
}

TEST_F(PosixFullOutput, JudgesNothingWhereTheNamesOfColumnsCannotBeTold)
{
    Order("A001.xml");

    EXPECT_EQ(BatchToFullDevice({"--output-format", "csv"}), 3);

    EXPECT_EQ(RecordsWritten(), 0U);
}

} // namespace
} // namespace testing_support
