// What doctor makes of what it sees: clocks, names of drivers, room, ages.

#include "host/doctor/database_checks.h"
#include "host/doctor/driver.h"
#include "host/doctor/folder.h"
#include "host/doctor/local_time.h"
#include "host/doctor/words.h"
#include "host/exit_status.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace doctor
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::int64_t kHour = 3600;

Finding ClockOff(std::int64_t seconds)
{
    return JudgeClock({1000000, 1000000 + seconds, 1000000});
}

TEST(DoctorClock, ThatIsTwoSecondsOffIsInOrder)
{
    for (const std::int64_t seconds : {-2, 0, 2})
    {
        EXPECT_EQ(ClockOff(seconds).outcome, Outcome::Ok) << seconds;
    }
}

TEST(DoctorClock, ThatIsMoreOffIsToldWithItsDirection)
{
    EXPECT_EQ(ClockOff(3).outcome, Outcome::Warning);
    EXPECT_THAT(ClockOff(3).found, HasSubstr("3 seconds ahead of this machine's"));
    EXPECT_EQ(ClockOff(-3).outcome, Outcome::Warning);
    EXPECT_THAT(ClockOff(-180).found, HasSubstr("3 minutes behind this machine's"));
    EXPECT_THAT(ClockOff(-180).remedy, HasSubstr("time server"));
}

TEST(DoctorClock, ThatIsWholeQuartersOfAnHourOffHasAnotherTimeZone)
{
    for (const std::int64_t seconds :
         {kHour, -9 * kHour, 5 * kHour + kHour / 2, kHour - 1, kHour + 2})
    {
        EXPECT_THAT(ClockOff(seconds).found, HasSubstr("another time zone")) << seconds;
        EXPECT_THAT(ClockOff(seconds).remedy, HasSubstr("time zone of this machine")) << seconds;
    }
    for (const std::int64_t seconds : {std::int64_t{3}, std::int64_t{200}, kHour + 3})
    {
        EXPECT_THAT(ClockOff(seconds).found, Not(HasSubstr("zone"))) << seconds;
    }
}

TEST(DoctorClock, OfASlowServerIsNoFaultWhileItLiesBetweenTheTwoLooks)
{
    EXPECT_EQ(JudgeClock({1000, 1005, 1010}).outcome, Outcome::Ok);
    EXPECT_EQ(JudgeClock({1000, 1013, 1010}).outcome, Outcome::Warning);
    EXPECT_EQ(JudgeClock({1000, 997, 1010}).outcome, Outcome::Warning);
}

TEST(DoctorTime, IsReadFromItsDigits)
{
    ASSERT_TRUE(ClockSeconds("1970-01-01 00:00:00").has_value());
    EXPECT_EQ(*ClockSeconds("1970-01-01 00:00:00"), 0);
    EXPECT_EQ(*ClockSeconds("2026-03-01 00:00:00.123456") - *ClockSeconds("2026-02-28 23:59:59"),
              1);
    EXPECT_EQ(*ClockSeconds("2024-03-01T00:00:00") - *ClockSeconds("2024-02-28 00:00:00"),
              48 * kHour);
    for (const char* const text : {"", "2026-03-29", "2026-02-30 00:00:00", "29.03.2026 14:05:09"})
    {
        EXPECT_FALSE(ClockSeconds(text).has_value()) << text;
    }
}

TEST(DoctorTime, AgesAreToldInTheirLargestUnit)
{
    EXPECT_EQ(AgeInWords(0), "0 seconds");
    EXPECT_EQ(AgeInWords(1), "1 second");
    EXPECT_EQ(AgeInWords(119), "1 minute");
    EXPECT_EQ(AgeInWords(2 * kHour), "2 hours");
    EXPECT_EQ(AgeInWords(49 * kHour), "2 days");
    EXPECT_EQ(AgeInWords(-5), "0 seconds");
}

Finding DriverNamed(const std::string& text,
                    const std::optional<std::vector<std::string>>& installed)
{
    return CheckDriverName(database::ConnectionString(text), installed);
}

TEST(DoctorDriver, ThatIsInstalledIsFoundInWhateverCase)
{
    const std::vector<std::string> installed = {"SQLite3", "PostgreSQL Unicode"};
    EXPECT_EQ(DriverNamed("Driver=sqlite3;Database=x", installed).outcome, Outcome::Ok);
    EXPECT_EQ(DriverNamed("Driver={PostgreSQL Unicode};Server=x", installed).outcome, Outcome::Ok);
}

TEST(DoctorDriver, ThatIsNotInstalledIsToldWithThoseThatAreAndWithItsPackage)
{
    struct Case
    {
        const char* driver;
        const char* package;
    };
    for (const Case& each : {Case{"SQLite 4", "apt install libsqliteodbc"},
                             Case{"psqlODBC", "apt install odbc-postgresql"},
                             Case{"PostgreSQL ANSI", "apt install odbc-postgresql"},
                             Case{"MariaDB 3", "apt install odbc-mariadb"},
                             Case{"MySQL ODBC 8", "apt install odbc-mariadb"},
                             Case{"ODBC Driver 18 for SQL Server", "apt install tdsodbc"}})
    {
        const Finding finding = DriverNamed(std::string("Driver={") + each.driver + "};Server=x",
                                            {{"SQLite3", "Oracle"}});
        EXPECT_EQ(finding.outcome, Outcome::Failed) << each.driver;
        EXPECT_THAT(finding.found, HasSubstr("installed are: SQLite3, Oracle"));
        EXPECT_THAT(finding.remedy, HasSubstr(each.package));
    }
    const Finding unknown = DriverNamed("Driver=Ingres;Server=x", std::vector<std::string>());
    EXPECT_THAT(unknown.found, HasSubstr("no driver is"));
    EXPECT_THAT(unknown.remedy, HasSubstr("install the product's ODBC driver"));
}

TEST(DoctorDriver, ThatWasMistypedIsSuggested)
{
    EXPECT_THAT(DriverNamed("Driver=SQLte3;Database=x", {{"SQLite3"}}).remedy,
                HasSubstr("Did you mean SQLite3?"));
}

TEST(DoctorDriver, WithoutADriverManagerIsToldSo)
{
    const Finding finding = DriverNamed("Driver=SQLite3;Database=x", std::nullopt);
    EXPECT_EQ(finding.outcome, Outcome::Failed);
    EXPECT_THAT(finding.remedy, HasSubstr("apt install unixodbc"));
}

TEST(DoctorDriver, OfADataSourceIsLeftToTheConnection)
{
    const Finding finding = DriverNamed("DSN=bank;UID=check", {{"SQLite3"}});
    EXPECT_EQ(finding.outcome, Outcome::Ok);
    EXPECT_THAT(finding.found, AllOf(HasSubstr("'bank'"), HasSubstr("odbc.ini")));
}

TEST(DoctorRoom, BelowAHundredMebibytesIsTold)
{
    constexpr std::uint64_t kLimit = std::uint64_t{100} * 1024 * 1024;
    EXPECT_FALSE(JudgeRoom("store", kLimit).has_value());
    const auto little = JudgeRoom("store", kLimit - 1);
    ASSERT_TRUE(little.has_value());
    EXPECT_EQ(little->outcome, Outcome::Warning);
    EXPECT_THAT(little->found, HasSubstr("99 MiB"));
    EXPECT_THAT(little->remedy, HasSubstr("signcheck prune"));
}

TEST(DoctorWords, EndWithFindingsOnlyWhenSomethingFailed)
{
    const Findings sound = {{"a", Outcome::Ok, "x", ""}, {"b", Outcome::Warning, "y", "Do z."}};
    Findings failed = sound;
    failed.push_back({"c", Outcome::Failed, "w", "Mend it."});
    failed.push_back({"d", Outcome::NotLooked, "v", ""});

    EXPECT_EQ(StatusOf(sound), host::kDone);
    EXPECT_EQ(StatusOf(failed), host::kFindings);
    EXPECT_THAT(AsText(failed), HasSubstr("1 failed, 1 warning, 1 in order, 1 not looked at.\n"));
    const auto json = AsJson(failed);
    EXPECT_EQ(json["failed"], 1);
    EXPECT_EQ(json["status"], 1);
    EXPECT_EQ(json["checks"].size(), 4U);
    EXPECT_TRUE(json["checks"][0]["remedy"].is_null());
    EXPECT_EQ(json["checks"][3]["result"], "not-looked-at");
}

TEST(DoctorWords, ShowNoPassword)
{
    const Findings findings = {
        {"a", Outcome::Failed, "Driver=x;PWD=geheim is wrong", "Give PWD=geheim2 elsewhere."}};
    EXPECT_THAT(AsText(findings), Not(HasSubstr("geheim")));
    EXPECT_THAT(AsJson(findings).dump(), Not(HasSubstr("geheim")));
}

TEST(DoctorWords, KeepTo80Columns)
{
    const Findings findings = {{"indexes", Outcome::NotLooked, std::string(200, 'x'),
                                "Make it: CREATE INDEX SSR_CONTRACTCUR_KEY ON SSR_CONTRACTCUR "
                                "(VPNAME, VFNAME, VCNAME, PROTOCOL, TYPE, SERVER)."}};
    const std::string text = AsText(findings);
    for (std::size_t begin = 0; begin < text.size();)
    {
        const std::size_t end = text.find('\n', begin);
        EXPECT_LE(end - begin, 80U) << text.substr(begin, end - begin);
        begin = end + 1;
    }
}

} // namespace
} // namespace doctor
