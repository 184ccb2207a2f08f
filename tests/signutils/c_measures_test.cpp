#include "tests/signutils/c_handles.h"
#include "tests/signutils/session_fixture.h"
#include "tests/testing/exposition_reader.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <string>

using namespace testing_support;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace
{

class CMeasures : public SessionTest
{
protected:
    double Checks(const std::string& verdict) const
    {
        EXPECT_EQ(SignUtilsWriteMeasures(m_file.c_str()), SIGNUTILS_OK) << ThreadErrorText();
        EXPECT_EQ(ThreadErrorText(), "");
        return ExpositionReader(ReadWholeFile(m_file))
            .Sum("signutils_checks_total", {{"verdict", verdict}, {"source", "host"}});
    }

    std::string m_file = m_folder.Path("host.prom");
};

TEST_F(CMeasures, CountTheChecksOfAHost)
{
    EXPECT_EQ(SignUtilsStartMeasures(), SIGNUTILS_OK);
    const double before = Checks("success");
    const CSession session;
    PrepareC(session, m_database.ConnexionString());
    std::uint32_t verdict = 4711;
    ASSERT_EQ(SignUtilsCheckSignRules(session, "order.xml", "Ana Ruiz", &verdict), SIGNUTILS_OK);
    EXPECT_EQ(Checks("success"), before + 1.0);
}

TEST_F(CMeasures, FileThatCannotBeWrittenIsToldByName)
{
    EXPECT_EQ(SignUtilsStartMeasures(), SIGNUTILS_OK);
    EXPECT_EQ(SignUtilsWriteMeasures(m_folder.Path("away/é.prom").c_str()), SIGNUTILS_FAILED);
    EXPECT_THAT(ThreadErrorText(),
                AllOf(StartsWith("path: the measures cannot be written to \""),
                      HasSubstr("é.prom\": path not found"), HasSubstr("Give a file")));
}

TEST_F(CMeasures, PathThatIsMissingOrNotUtf8IsRefused)
{
    EXPECT_EQ(SignUtilsWriteMeasures(nullptr), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_THAT(ThreadErrorText(), StartsWith("path: is null."));
    EXPECT_EQ(SignUtilsWriteMeasures("\xFF"), SIGNUTILS_NOT_UTF8);
    EXPECT_EQ(SignUtilsWriteMeasures("Ł.prom"), SIGNUTILS_NOT_WINDOWS_1252);
}

} // namespace
