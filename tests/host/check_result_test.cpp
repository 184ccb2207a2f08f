#include "host/check_result.h"

#include "host/exit_status.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace
{

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

host::CheckResult Ran(unsigned int verdict)
{
    host::CheckResult result;
    result.verdict = verdict;
    result.ran = true;
    result.rulesComplete = true;
    result.rowsDue = 1;
    result.rowsWritten = 1;
    result.journal = "written";
    return result;
}

TEST(CheckExitStatus, FollowsTheVerdict)
{
    EXPECT_EQ(host::ExitStatusOf(Ran(0)), host::kNoRule);
    EXPECT_EQ(host::ExitStatusOf(Ran(1)), host::kDone);
    EXPECT_EQ(host::ExitStatusOf(Ran(2)), host::kFindings);
}

TEST(CheckExitStatus, SuccessOnUnknownAmountsIsFour)
{
    auto result = Ran(1);
    result.amounts.origin = host::AmountsOrigin::Unknown;

    EXPECT_EQ(host::ExitStatusOf(result), host::kAmountsUnknown);
    EXPECT_THAT(host::WarningsAfter({}, result), Contains(HasSubstr("UNKNOWN amounts")));
    EXPECT_EQ(host::CheckAsJson({}, result)["amounts"], "unknown");
}

TEST(CheckExitStatus, RefusalOnUnknownAmountsStaysARefusal)
{
    auto result = Ran(2);
    result.amounts.origin = host::AmountsOrigin::Unknown;

    EXPECT_EQ(host::ExitStatusOf(result), host::kFindings);
}

TEST(CheckThatDidNotRun, IsNoRefusal)
{
    auto result = Ran(2);
    result.ran = false;
    result.problem = "connection lost";

    EXPECT_EQ(host::ExitStatusOf(result), host::kCouldNotRun);
    EXPECT_EQ(host::OutcomeName(result), "not-run");
    EXPECT_THAT(host::WarningsAfter({}, result),
                Contains(HasSubstr("could NOT be run, so nothing was decided: connection lost.")));
    EXPECT_THAT(host::CheckInWords({}, result), HasSubstr("NOT RUN"));
    EXPECT_THAT(host::CheckInWords({}, result), HasSubstr("Recorded  nothing"));
}

TEST(CheckThatDidNotRun, WarnsOfAReportThatWentOutAllTheSame)
{
    host::CheckRequest request;
    request.psrService = "STATUS";
    auto result = Ran(2);
    result.ran = false;
    result.report = "<Document/>";
    result.reportHandedOn = true;

    EXPECT_THAT(host::WarningsAfter(request, result), Contains(HasSubstr("withdraw it")));
}

TEST(CheckWarnings, NoneWhereAllWasRecorded)
{
    EXPECT_THAT(host::WarningsAfter({}, Ran(1)), IsEmpty());
}

TEST(CheckWarnings, MissingRowsAreCounted)
{
    auto result = Ran(2);
    result.rowsDue = 3;
    result.problem = "no such table";

    EXPECT_THAT(host::WarningsAfter({}, result),
                Contains(HasSubstr("2 of 3 history rows were NOT written: no such table.")));
}

TEST(CheckWarnings, SpooledAndLostEventsAreTold)
{
    auto result = Ran(1);
    result.journal = "spooled";
    EXPECT_THAT(host::WarningsAfter({}, result), Contains(HasSubstr("spool folder")));
    result.journal = "lost";
    EXPECT_THAT(host::WarningsAfter({}, result), Contains(HasSubstr("LOST")));
}

TEST(CheckWarnings, RulesThatCouldNotAllBeReadAreTold)
{
    auto result = Ran(1);
    result.rulesComplete = false;

    EXPECT_THAT(host::WarningsAfter({}, result), Contains(HasSubstr("not all rules")));
}

TEST(CheckWarnings, HoldersThatCouldNotAllBeLookedUpAreTold)
{
    auto result = Ran(0);
    result.lookupsComplete = false;
    result.problem = "disk I/O error";

    EXPECT_THAT(host::WarningsAfter({}, result),
                Contains(HasSubstr("could be looked up: disk I/O error. Rules may not")));
    EXPECT_EQ(host::CheckAsJson({}, result)["lookupsComplete"], false);
}

TEST(CheckWarnings, AReportThatWasNotHandedOnIsTold)
{
    host::CheckRequest request;
    request.psrService = "STATUS";
    auto result = Ran(2);
    result.report = "<Document/>";
    request.handOff = "/store";
    result.reportProblem = "No space left";

    EXPECT_THAT(host::WarningsAfter(request, result),
                Contains(HasSubstr("NOT handed on to service 'STATUS' of the store '/store': No "
                                   "space left. Check that")));
    EXPECT_THAT(host::CheckInWords(request, result), HasSubstr("written, but not handed on"));
}

TEST(CheckWarnings, ACauseWithAFullStopHasOne)
{
    auto result = Ran(2);
    result.rowsDue = 2;
    result.problem = "connection lost. ";

    EXPECT_THAT(host::WarningsAfter({}, result),
                Contains(HasSubstr("NOT written: connection lost. The verdict stands")));
}

TEST(CheckInWords, NeverShowsControlCharactersOfTheData)
{
    auto result = Ran(2);
    result.findings = {"name \x1B[2J"};

    EXPECT_THAT(host::CheckInWords({}, result), Not(HasSubstr("\x1B")));
}

} // namespace
