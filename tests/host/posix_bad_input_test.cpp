// What signcheck can be given on POSIX alone: arguments and variables that are bytes, and devices
// that have a place among the files.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class PosixBadInput : public SampleBankTest
{
protected:
    std::string RefusalOf(const std::vector<std::string>& arguments)
    {
        const Answer answer = RunSigncheck(arguments);
        EXPECT_EQ(answer.status, 64) << answer.errors;
        EXPECT_EQ(answer.output, "");
        EXPECT_EQ(RecordsWritten(), 0U);
        return answer.errors;
    }

    const std::vector<std::string> m_valid = CheckOf("Élodie Lefèvre");
};

TEST_F(PosixBadInput, ADeviceInsteadOfAnOrderFile)
{
    auto arguments = m_valid;
    arguments[1] = "/dev/null";
    EXPECT_THAT(RefusalOf(arguments),
                HasSubstr("argument FILE: '/dev/null' is no regular file. Give the path"));
}

TEST_F(PosixBadInput, ADeviceInThePlaceOfAPageStays)
{
    const std::string page = m_folder.Path("page.html");
    std::filesystem::create_symlink("/dev/null", page);

    EXPECT_THAT(RefusalOf({"map", "C-7001", "--db", Db(), "--html", page}),
                HasSubstr("is no regular file. Give the path of a file."));
    EXPECT_TRUE(std::filesystem::is_symlink(page));
}

TEST_F(PosixBadInput, ADeviceInsteadOfATrace)
{
    // Reading it would end with the memory.
    EXPECT_THAT(RefusalOf({"explain", "/dev/zero"}),
                HasSubstr("argument TRACE: '/dev/zero' is no regular file. Give the path"));
}

TEST_F(PosixBadInput, BytesThatAreNoUtf8)
{
    EXPECT_THAT(
        RefusalOf(With(m_valid, "--signers", "\xC9lodie")),
        AllOf(HasSubstr("option --signers"), HasSubstr("no UTF-8"), HasSubstr("Give it in UTF-8")));
    auto arguments = m_valid;
    arguments.emplace_back("--request=\xFF");
    EXPECT_THAT(RefusalOf(arguments), HasSubstr("option --request"));
    EXPECT_THAT(RefusalOf(With(m_valid, "--db", "Driver=X;PWD=s3cret\xFF")),
                AllOf(HasSubstr("option --db"), Not(HasSubstr("s3cret"))));
}

TEST_F(PosixBadInput, BytesThatAreNoUtf8InTheEnvironment)
{
    const ScopedEnvironment variable("SIGNCHECK_DB", "Driver=SQLite3;Database=\xFF");

    EXPECT_THAT(RefusalOf(Without(m_valid, "--db")),
                AllOf(HasSubstr("SIGNCHECK_DB"), HasSubstr("UTF-8")));
}

} // namespace
} // namespace testing_support
