// signcheck prune: what is archived, what is removed, and what an interruption leaves.

#include "services/event_line.h"
#include "services/event_spool.h"
#include "services/sha256.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::vector<nlohmann::json> ObjectsIn(const std::string& path)
{
    std::vector<nlohmann::json> objects;
    std::istringstream stream(ReadWholeFile(path));
    for (std::string line; std::getline(stream, line);)
    {
        objects.push_back(nlohmann::json::parse(line));
    }
    return objects;
}

class Prune : public SampleBankTest
{
protected:
    Prune() : m_archive(m_folder.Path("archive"))
    {
        Check("Élodie Lefèvre", "A001"); // success
        Check("Hélène Garçon", "A002");  // refused, with a report
        Check("Hélène Garçon", "A003");  // refused, with a report
        m_database.Execute(L"UPDATE HST_SIGNRULES SET DATETIME = '2025-12-31 23:59:59' "
                           L"WHERE ORDERID <> 'A003'");
        m_database.Execute(L"UPDATE EVT_JOURNAL SET DATETIME = '2025-12-31 23:59:59' "
                           L"WHERE TEXT NOT LIKE '%OrderId=A003%'");
        SetReportTime("A002", "2025-12-31T23:59:59");
    }

    void Check(const std::string& signers, const std::string& orderId)
    {
        auto arguments = CheckOf(signers);
        arguments.insert(arguments.end(),
                         {"--order-id", orderId, "--psr-service", "STATUS", "--party", "QZBKFRPP",
                          "--message-name", "pain.001.001.03", "--message-id", "RPT-" + orderId});
        EXPECT_LE(RunSigncheck(arguments).status, 2);
    }

    std::string ReportOf(const std::string& orderId)
    {
        const auto reports =
            RunSigncheck({"reports", "--order-id", orderId, "--json"}).Json()["reports"];
        return reports.empty() ? std::string() : reports[0]["path"].get<std::string>();
    }

    void SetReportTime(const std::string& orderId, const std::string& time)
    {
        const std::string path = ReportOf(orderId);
        std::string document = ReadWholeFile(path);
        const std::size_t at = document.find("<CreDtTm>") + 9;
        document.replace(at, document.find("</CreDtTm>") - at, time);
        std::ofstream(Utf8Path(path), std::ios::binary) << document;
    }

    Answer Run(std::vector<std::string> more = {"--yes"})
    {
        std::vector<std::string> arguments = {"prune",      "--db",     Db(),     "--before",
                                              "2026-01-01", "--export", m_archive};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }

    std::vector<std::wstring> OrdersLeft()
    {
        std::vector<std::wstring> orders;
        for (const Row& row : m_database.Query(L"SELECT ORDERID FROM HST_SIGNRULES ORDER BY ROWNO"))
        {
            orders.push_back(row[0].value_or(L""));
        }
        return orders;
    }

    std::size_t EventsLeft() { return m_database.Query(L"SELECT EVENTID FROM EVT_JOURNAL").size(); }

    std::string InArchive(const std::string& name) const { return m_archive + "/" + name; }

    void WriteInArchive(const std::string& name, const std::string& bytes)
    {
        std::filesystem::create_directories(Utf8Path(m_archive));
        m_folder.Write("archive/" + name, bytes);
    }

    std::vector<std::string> OrdersInArchive()
    {
        std::vector<std::string> orders;
        for (const auto& row : ObjectsIn(InArchive("history.ndjson")))
        {
            orders.push_back(row["ORDERID"]);
        }
        return orders;
    }

    std::string m_archive;
};

TEST_F(Prune, RemovesWhatIsFromBeforeTheDayAndNothingElse)
{
    const Answer answer = Run();

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(
        answer.output,
        HasSubstr("Removed   2 history rows, 3 audit events, 1 status report, 0 spool lines\n"));
    EXPECT_THAT(OrdersLeft(), ElementsAre(L"A003"));
    EXPECT_EQ(EventsLeft(), 2U);
    EXPECT_EQ(ReportOf("A002"), "");
    EXPECT_NE(ReportOf("A003"), "");
}

TEST_F(Prune, ArchivesEveryColumnOfEveryRow)
{
    const auto before =
        m_database.Query(L"SELECT ROWNO, SIGNER1, MOTIF, FILENAME FROM HST_SIGNRULES "
                         L"WHERE ORDERID = 'A001'");
    Run();

    EXPECT_THAT(OrdersInArchive(), ElementsAre("A002", "A001"));
    const auto row = ObjectsIn(InArchive("history.ndjson"))[1];
    EXPECT_EQ(row.size(), 18U);
    EXPECT_EQ(row["ROWNO"], 1);
    EXPECT_EQ(row["SIGNER1"], "Élodie Lefèvre");
    EXPECT_EQ(row["TOTAL"], 900.0);
    EXPECT_EQ(row["DATETIME"], "2025-12-31 23:59:59");
    EXPECT_EQ(row["FILENAME"], m_order);
    const auto event = ObjectsIn(InArchive("events.ndjson"))[2];
    EXPECT_EQ(event.size(), 11U);
    EXPECT_EQ(event["EVENTID"], 1);
    EXPECT_EQ(event["EVENTKEY"].get<std::string>().size(), 36U);
    EXPECT_TRUE(event["REFERENCE"].is_null() || event["REFERENCE"].is_string());
    EXPECT_THAT(event["TEXT"].get<std::string>(), HasSubstr("CHECK SIGNATURES RULES SUCCESS\r\n"));
    EXPECT_EQ(before.size(), 1U);
}

TEST_F(Prune, NullAndEmptyTextStayApartInTheArchive)
{
    m_database.Execute(L"UPDATE HST_SIGNRULES SET MOTIF = NULL WHERE ORDERID = 'A001'");
    m_database.Execute(L"UPDATE HST_SIGNRULES SET MOTIF = '' WHERE ORDERID = 'A002'");

    Run();

    const auto rows = ObjectsIn(InArchive("history.ndjson"));
    EXPECT_EQ(rows[0]["MOTIF"], "");
    EXPECT_TRUE(rows[1]["MOTIF"].is_null());
}

TEST_F(Prune, RowsWithAmountsOfManyDigitsAreArchivedWholeAndRemoved)
{
    m_database.Execute(
        L"UPDATE HST_SIGNRULES SET TOTAL = 123456789012.98754, MAXORDER = 98765432109.876543");

    const Answer answer = Run();

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(OrdersLeft(), ElementsAre(L"A003"));
    const auto rows = ObjectsIn(m_archive + "/history.ndjson");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0]["TOTAL"], 123456789012.98754);
    EXPECT_EQ(rows[0]["MAXORDER"], 98765432109.876543);
}

TEST_F(Prune, TheManifestHasDigestsOfEveryFile)
{
    Run();

    const auto manifest = nlohmann::json::parse(ReadWholeFile(InArchive("manifest.json")));
    EXPECT_EQ(manifest["before"], "2026-01-01");
    ASSERT_EQ(manifest["files"].size(), 4U);
    for (const auto& file : manifest["files"])
    {
        const std::string bytes = ReadWholeFile(InArchive(file["name"]));
        EXPECT_EQ(services::Sha256Hex(bytes), file["sha256"].get<std::string>());
        EXPECT_EQ(bytes.size(), file["bytes"].get<std::size_t>());
        EXPECT_EQ(ObjectsIn(InArchive(file["name"])).size(), file["rows"].get<std::size_t>());
    }
}

// A relative name would be another place for who goes on with the archive from another folder.
TEST_F(Prune, TheArchiveNamesDatabaseAndStoreByTheirFullPaths)
{
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(Utf8Path(m_folder.Path()));
    const Answer answer = Run({"--yes", "--hand-off", "handoff"});
    std::filesystem::current_path(before);

    EXPECT_EQ(answer.status, 0) << answer.errors;
    const auto manifest = nlohmann::json::parse(ReadWholeFile(InArchive("manifest.json")));
    EXPECT_EQ(Utf8Path(manifest["store"].get<std::string>()),
              std::filesystem::absolute(Utf8Path(m_folder.Path("handoff"))).make_preferred());
    const std::string database = manifest["database"];
    if (Db().find("SQLite") != std::string::npos)
    {
        EXPECT_THAT(database, HasSubstr(".db"));
    }
    else
    {
        EXPECT_THAT(database, AllOf(HasSubstr("Driver="), Not(HasSubstr("PWD"))));
    }
    EXPECT_TRUE(Utf8Path(ObjectsIn(InArchive("reports.ndjson"))[0]["original"].get<std::string>())
                    .is_absolute());
    EXPECT_EQ(ReportOf("A002"), "");
}

TEST_F(Prune, ReportsAreCopiedByteForByte)
{
    const std::string document = ReadWholeFile(ReportOf("A002"));
    Run();

    const auto listed = ObjectsIn(InArchive("reports.ndjson"));
    ASSERT_EQ(listed.size(), 1U);
    const std::string copy = InArchive(listed[0]["folder"].get<std::string>()) + "/" +
                             listed[0]["name"].get<std::string>();
    EXPECT_EQ(ReadWholeFile(copy), document);
    EXPECT_EQ(services::Sha256Hex(document), listed[0]["sha256"].get<std::string>());
}

TEST_F(Prune, ReportsThatTellNoTimeStay)
{
    SetReportTime("A002", "");

    EXPECT_THAT(Run().output, HasSubstr("0 status reports"));
    EXPECT_NE(ReportOf("A002"), "");
}

TEST_F(Prune, DryRunTellsAndTouchesNothing)
{
    const Answer answer =
        RunSigncheck({"prune", "--db", Db(), "--before", "2026-01-01", "--dry-run"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(
        answer.output,
        HasSubstr("Would go  2 history rows, 3 audit events, 1 status report, 0 spool lines\n"));
    EXPECT_EQ(OrdersLeft().size(), 3U);
    EXPECT_FALSE(std::filesystem::exists(m_archive));
}

TEST_F(Prune, AsksBeforeItRemovesWhereSomebodyCanAnswer)
{
    const Answer answer = Run({});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("no terminal"), HasSubstr("--dry-run")));
    EXPECT_EQ(OrdersLeft().size(), 3U);
    EXPECT_FALSE(std::filesystem::exists(m_archive));
}

TEST_F(Prune, JsonTellsWhatWasArchivedAndRemoved)
{
    const auto json = Run({"--yes", "--json"}).Json();

    EXPECT_EQ(json["archived"]["history"], 2);
    EXPECT_FALSE(json["resumed"].get<bool>());
    EXPECT_EQ(json["removed"]["history"], 2);
    EXPECT_EQ(json["removed"]["events"], 3);
    EXPECT_EQ(json["removed"]["reports"], 1);
    EXPECT_EQ(json["dryRun"], false);
}

TEST_F(Prune, ADayThatIsNoneOrHasNotComeIsRefused)
{
    for (const std::string day : {"2026", "2026-02-30", "2026-01-01 10:00", "yesterday"})
    {
        const Answer answer = RunSigncheck({"prune", "--db", Db(), "--dry-run", "--before=" + day});
        EXPECT_EQ(answer.status, 64);
        EXPECT_THAT(answer.errors, HasSubstr("option --before: '" + day + "' is no day"));
    }
    EXPECT_THAT(RunSigncheck({"prune", "--db", Db(), "--dry-run", "--before", "9999-01-01"}).errors,
                HasSubstr("has not come yet"));
}

TEST_F(Prune, AFolderWithAnythingElseIsRefused)
{
    WriteInArchive("letter.txt", "x");

    const Answer answer = Run();

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("holds 'letter.txt', which is no archive"));
    EXPECT_EQ(OrdersLeft().size(), 3U);
}

TEST_F(Prune, AnArchiveWhoseFolderIsMissingIsRefused)
{
    m_archive = m_folder.Path("none") + "/archive";

    const Answer answer = Run();

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("option --export: there is no folder '"),
                                     HasSubstr("none' to make the archive in. Make it, or check")));
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path("none")));
    EXPECT_EQ(OrdersLeft().size(), 3U);
}

TEST_F(Prune, AnArchiveInTheHandOffStoreIsRefused)
{
    for (const char* const within : {"", "/archive", "/STATUS/archive/"})
    {
        m_archive = m_folder.Path("handoff") + within;

        const Answer answer = Run();

        EXPECT_EQ(answer.status, 64) << within;
        EXPECT_THAT(answer.errors, HasSubstr("lies in the hand-off store"));
    }
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path("handoff") + "/archive"));
    EXPECT_EQ(OrdersLeft().size(), 3U);
}

TEST_F(Prune, AnArchiveThatIsDoneIsNotWrittenAgain)
{
    Run();

    const Answer again = Run();

    EXPECT_EQ(again.status, 3);
    EXPECT_THAT(again.errors, HasSubstr("holds an archive that is done"));
}

/// Interrupted between archive and removal, by a trigger that SQLite has.
class InterruptedPrune : public Prune
{
protected:
    Answer Interrupt()
    {
        m_database.Execute(L"CREATE TRIGGER STOP BEFORE DELETE ON EVT_JOURNAL BEGIN SELECT "
                           L"RAISE(ABORT, 'disk is full'); END");
        return Run();
    }

    void Resume() { m_database.Execute(L"DROP TRIGGER STOP"); }
};

// As a kill between the manifest and the removal leaves it.
TEST_F(InterruptedPrune, ASecondRunGoesOnFromTheArchiveOfAnInterruptedOne)
{
    const Answer first = Interrupt();
    EXPECT_EQ(first.status, 3);
    EXPECT_THAT(first.errors, HasSubstr("All of them stay"));
    EXPECT_EQ(OrdersLeft().size(), 3U) << "one transaction: the history rows stay as well";
    EXPECT_NE(ReportOf("A002"), "");
    Resume();
    const std::string archived = ReadWholeFile(InArchive("history.ndjson"));

    const Answer second = Run();

    EXPECT_EQ(second.status, 0) << second.errors;
    EXPECT_THAT(second.output, HasSubstr("command that was interrupted"));
    EXPECT_EQ(ReadWholeFile(InArchive("history.ndjson")), archived);
    EXPECT_THAT(OrdersLeft(), ElementsAre(L"A003"));
    EXPECT_EQ(ReportOf("A002"), "");
    EXPECT_TRUE(nlohmann::json::parse(ReadWholeFile(InArchive("removed.json")))["resumed"]);
}

TEST_F(Prune, ASecondRunGoesOnWhereTheRowsHaveGoneAndTheReportsStay)
{
    Run();
    const std::string document = ReadWholeFile(InArchive("reports/STATUS/DUPONTSA/1.psr"));
    std::filesystem::remove(InArchive("removed.json"));
    m_folder.Write("handoff/STATUS/DUPONTSA/1.psr", document);

    const Answer second = Run();

    EXPECT_EQ(second.status, 0) << second.errors;
    EXPECT_THAT(second.output,
                HasSubstr("Removed   0 history rows, 0 audit events, 1 status report"));
}

TEST_F(Prune, AnInterruptedExportIsMadeAnew)
{
    WriteInArchive("history.ndjson.part", "{\"ROW");
    WriteInArchive("events.ndjson", "old\n");

    const Answer answer = Run();

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(ObjectsIn(InArchive("events.ndjson")).size(), 3U);
    EXPECT_FALSE(std::filesystem::exists(InArchive("history.ndjson.part")));
}

TEST_F(InterruptedPrune, AnArchiveOfAmountsOfManyDigitsIsGoneOnFrom)
{
    m_database.Execute(L"UPDATE HST_SIGNRULES SET TOTAL = 922337203685.4775 "
                       L"WHERE ORDERID = 'A001'");
    EXPECT_EQ(Interrupt().status, 3);
    Resume();

    EXPECT_EQ(Run().status, 0);

    EXPECT_THAT(OrdersLeft(), ElementsAre(L"A003"));
}

TEST_F(InterruptedPrune, AnAmountChangedInItsLastDigitStays)
{
    m_database.Execute(L"UPDATE HST_SIGNRULES SET TOTAL = 123456789012.3456 "
                       L"WHERE ORDERID = 'A001'");
    Interrupt();
    Resume();
    m_database.Execute(L"UPDATE HST_SIGNRULES SET TOTAL = 123456789012.3457 "
                       L"WHERE ORDERID = 'A001'");

    const Answer answer = Run();

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("row 1 is no longer what was archived"));
    EXPECT_EQ(OrdersLeft().size(), 3U);
}

TEST_F(InterruptedPrune, ADamagedArchiveRemovesNothing)
{
    Interrupt();
    Resume();
    WriteInArchive("history.ndjson", "");

    const Answer answer = Run();

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("is not what was written"));
    EXPECT_EQ(OrdersLeft().size(), 3U);
}

TEST_F(InterruptedPrune, AnArchiveOfAnotherDayIsNotGoneOnWith)
{
    Interrupt();

    const Answer answer = RunSigncheck(
        {"prune", "--db", Db(), "--before", "2025-06-01", "--export", m_archive, "--yes"});

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("interrupted prune before 2026-01-01"));
}

TEST_F(InterruptedPrune, ARowThatChangedSinceItWasArchivedStaysWithAllOthers)
{
    Interrupt();
    Resume();
    m_database.Execute(L"UPDATE HST_SIGNRULES SET MOTIF = 'other' WHERE ORDERID = 'A001'");

    const Answer answer = Run();

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("row 1 is no longer what was archived"));
    EXPECT_EQ(OrdersLeft().size(), 3U);
    EXPECT_EQ(EventsLeft(), 5U);
}

TEST_F(InterruptedPrune, ARowThatComesMeanwhileIsNotRemoved)
{
    Interrupt();
    Resume();
    m_database.Execute(L"INSERT INTO EVT_JOURNAL (EVENTKEY, DATETIME, LEVEL, TEXT) VALUES "
                       L"('00000000-0000-4000-8000-000000000001', '2025-01-01 00:00:00', 1, 'x')");

    EXPECT_EQ(Run().status, 0);

    EXPECT_EQ(EventsLeft(), 3U);
}

TEST_F(InterruptedPrune, AReportThatChangedStays)
{
    Interrupt();
    Resume();
    SetReportTime("A002", "2025-12-30T00:00:00");

    const Answer answer = Run();

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("is no longer what was archived, and stays"));
    EXPECT_NE(ReportOf("A002"), "");
}

class PrunedSpool : public Prune
{
protected:
    PrunedSpool() : m_spoolFolder(m_folder.Path("spool")) {}

    // An event as a host that could not reach the database left it.
    void Spool(const std::string& connection, const std::string& key, const std::string& time)
    {
        services::EventRecord event;
        event.key = key;
        event.dateTime = time;
        event.level = 1;
        event.text = L"spooled";
        EXPECT_TRUE(services::EventSpool(m_spoolFolder, connection).Append(event));
    }

    std::vector<std::string> Waiting(const std::string& connection)
    {
        std::vector<std::string> keys;
        services::EventSpool(m_spoolFolder, connection)
            .Deliver(
                [&keys](const services::EventRecord& event)
                {
                    keys.push_back(event.key);
                    return services::Delivery::Refused;
                });
        return keys;
    }

    std::string KeyOfFirstEvent()
    {
        const auto rows = m_database.Query(L"SELECT EVENTKEY FROM EVT_JOURNAL WHERE EVENTID = 1");
        const std::wstring key = rows[0][0].value();
        return {key.begin(), key.end()};
    }

    std::string m_spoolFolder;
};

constexpr const char* kOtherKey = "00000000-0000-4000-8000-000000000002";

TEST_F(PrunedSpool, DeliveredLinesGoAndOthersStay)
{
    Spool(Db(), KeyOfFirstEvent(), "2025-12-31 23:59:59");
    Spool(Db(), kOtherKey, "2025-12-31 23:59:59"); // was never delivered

    const Answer answer = Run();

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, HasSubstr("1 spool line\n"));
    EXPECT_THAT(Waiting(Db()), ElementsAre(kOtherKey));
    EXPECT_EQ(ObjectsIn(InArchive("spool.ndjson")).size(), 1U);
    EXPECT_EQ(EventsLeft(), 2U);
}

TEST_F(PrunedSpool, YoungDeliveredLinesStay)
{
    Spool(Db(), KeyOfFirstEvent(), "2026-01-01 00:00:00");

    EXPECT_THAT(Run().output, HasSubstr("0 spool lines"));
    EXPECT_EQ(Waiting(Db()).size(), 1U);
}

TEST_F(PrunedSpool, AnEventThatAnotherSpoolHoldsStaysInTheJournal)
{
    const std::string key = KeyOfFirstEvent();
    Spool("Driver=SQLite3;Database=other.db", key, "2025-12-31 23:59:59");

    const Answer answer = Run();

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, HasSubstr("1 event that another spool on this machine still has"));
    EXPECT_EQ(EventsLeft(), 3U);
    EXPECT_EQ(KeyOfFirstEvent(), key);
    EXPECT_EQ(Waiting("Driver=SQLite3;Database=other.db").size(), 1U);
}

} // namespace
} // namespace testing_support
