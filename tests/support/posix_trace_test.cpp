// Who may read a trace: its owner, unless the file was there with other rights.

#include "support/trace.h"
#include "tests/testing/file_mode.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

namespace
{

using testing_support::ModeOf;
using testing_support::ScopedMask;
using testing_support::TemporaryFolder;

void WriteTrace(const std::string& path)
{
    void* const trace = TraceOpen(path.c_str());
    ASSERT_TRUE(TraceIsUsable(trace));
    TimeTraceDump(trace, "TITLE", 0, 0);
    TraceClose(trace);
}

TEST(PosixTrace, NewOnesAreTheirOwnersWhateverTheMaskAllows)
{
    const TemporaryFolder folder;
    const ScopedMask mask(0);
    WriteTrace(folder.Path("trace.txt"));

    EXPECT_EQ(ModeOf(folder.Path("trace.txt")), 0600U);
}

// Whoever rotates logs decides who reads them; a trace holds no password.
TEST(PosixTrace, ThoseThatAreThereKeepTheRightsThatTheyWereGiven)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("trace.txt", "");
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    WriteTrace(path);

    EXPECT_EQ(ModeOf(path), 0640U);
    EXPECT_NE(testing_support::ReadWholeFile(path), "");
}

} // namespace
