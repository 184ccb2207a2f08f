// What signcheck asks of its process where it starts, as POSIX alone knows it.

#include "tests/host/signcheck_process.h"
#include "tests/testing/file_mode.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sys/resource.h>

namespace testing_support
{
namespace
{

using testing::HasSubstr;

/// Limits the size of files for a scope, for the processes that are started as well.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_before), 0);
        rlimit limited = m_before;
        limited.rlim_cur = bytes;
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_before = {};
};

class PosixProcess : public SampleBankTest
{
};

TEST_F(PosixProcess, AWriteBeyondTheFileSizeLimitIsToldAndEndsNothing)
{
    Answer answer;
    {
        const FileSizeLimit limit(1024);
        answer = RunSigncheck({"rules", "export", "--db", Db()});
    }
    EXPECT_EQ(answer.status, 3);
    EXPECT_EQ(answer.output.size(), 1024U);
    EXPECT_THAT(answer.errors, HasSubstr("standard output cannot be written"));
}

TEST_F(PosixProcess, ANewDatabaseIsItsOwnersAlone)
{
    const ScopedMask mask(022);
    const std::string path = m_folder.Path("new.db");

    EXPECT_EQ(RunSigncheck({"init", "--sample", "--db", "Driver=SQLite3;Database=" + path}).status,
              0);

    EXPECT_EQ(ModeOf(path), 0600U);
}

} // namespace
} // namespace testing_support
