// Replays that are ended in the middle. Processes are started and signalled as POSIX does.

#include "database/cdatabase.h"
#include "host/scratch/leftovers.h"
#include "tests/host/replay/replay_run.h"
#include "tests/host/started_command.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <optional>

namespace testing_support
{
namespace
{

using scratch::Leftover;
using testing::HasSubstr;
using testing::IsEmpty;

// Each with a signer of its own, so that each has to be asked about: seconds of work.
constexpr int kOrders = 3000;

class PosixReplay : public ReplayTest
{
protected:
    PosixReplay() : m_where{Db(), "the bank", "option --db"}
    {
        m_source.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        m_database.Execute(L"BEGIN");
        for (int order = 0; order < kOrders; ++order)
        {
            const std::wstring number = std::to_wstring(order);
            m_database.Execute(
                L"INSERT INTO HST_SIGNRULES (DATETIME, SERVER, STATUT, VPNAME, TYPE_PTC, VFNAME, "
                L"VCNAME, IDFICVFS, ORDERID, TYPE_CTRL, SIGNER1, SIGNER2, MOTIF, CNS, TOTAL, "
                L"MAXORDER, FILENAME) VALUES ('2026-03-29 10:00:00', 1, '0', 'DUPONTSA', 9, 'CCT', "
                L"'TRESOR', 0, '" +
                number + L"', 0, ' ', ' ', '', 'Signer " + number + L"', 900, 900, 'order.xml')");
        }
        m_database.Execute(L"COMMIT");
    }

    std::vector<Leftover> Copies()
    {
        std::vector<Leftover> copies = scratch::LeftoverFiles();
        const auto more = scratch::LeftoversIn(m_source, m_where);
        copies.insert(copies.end(), more.begin(), more.end());
        return copies;
    }

    /// Starts a replay and waits until it has made its copies.
    void Start()
    {
        const std::string rules = m_folder.Write("replayed.toml", Exported());
        m_replay.emplace(m_folder.Path(), std::vector<std::string>{"replay", "--rules=" + rules,
                                                                   "--db=" + Db(), "--json"});
        ASSERT_TRUE(ComesToHold([this] { return Copies().size() >= 2; }));
    }

    void ExpectNothingLeft(const std::string& told)
    {
        EXPECT_EQ(m_replay->End(), 3);
        EXPECT_THAT(m_replay->Errors(), HasSubstr(told));
        const auto answer = nlohmann::json::parse(m_replay->Output(), nullptr, false);
        ASSERT_TRUE(answer.is_object());
        EXPECT_EQ(answer["status"], 3);
        EXPECT_THAT(answer["error"].get<std::string>(), HasSubstr(told));
        EXPECT_THAT(Copies(), IsEmpty());
    }

    host::Connection m_where;
    CDatabase m_source;
    std::optional<StartedCommand> m_replay;
};

TEST_F(PosixReplay, ThatIsInterruptedLeavesNothingAndSaysSo)
{
    for (const int signal : {SIGINT, SIGTERM})
    {
        SCOPED_TRACE(signal);
        const auto before = AllTables();
        // Shells have what they start in the background ignore an interruption.
        std::signal(signal, SIG_DFL);
        ASSERT_NO_FATAL_FAILURE(Start());

        m_replay->Signal(signal);

        ExpectNothingLeft("interrupted; nothing was written to the database");
        EXPECT_EQ(AllTables(), before);
    }
}

TEST_F(PosixReplay, WhoseHistoryGoesAwayLeavesNothingAndSaysSo)
{
    ASSERT_NO_FATAL_FAILURE(Start());

    m_database.Execute(L"DROP TABLE HST_SIGNRULES");

    ExpectNothingLeft("refused to be read");
}

} // namespace
} // namespace testing_support
