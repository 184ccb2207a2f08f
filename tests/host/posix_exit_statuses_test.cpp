// Each exit status that a command's table names can be had, and the documents say the same.

#include "tests/host/shell_world.h"

#include "host/exit_status.h"
#include "host/exit_status_table.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <map>
#include <set>
#include <sstream>

namespace testing_support
{
namespace
{

namespace fs = std::filesystem;

using testing::HasSubstr;

/// A shell line that ends so.
struct Case
{
    const char* command;
    int status;
    const char* line;
};

#define EXIT_TERMS "--partner DUPONTSA --service CCT --client TRESOR --protocol 9 --type 1 "
#define ACCEPTED "--signers 'Élodie Lefèvre' "
#define UNKNOWN "--signers 'Paul Martin' "
#define AMOUNTS "--total 900 --largest 900 --currency EUR "
#define NO_BANK "--db 'Driver=SQLite3;Database=none.db' "
#define ANSWERED_NO(command) "echo no | script -qec '" command "' /dev/null"

const Case kCases[] = {
    {"check", 0, "signcheck check order.xml --format auto " EXIT_TERMS ACCEPTED},
    {"check", 1, "signcheck check refused.xml --format auto " EXIT_TERMS ACCEPTED},
    {"check", 2, "signcheck check order.xml --format auto " EXIT_TERMS UNKNOWN},
    {"check", 3, "signcheck check order.xml --format auto " EXIT_TERMS ACCEPTED NO_BANK},
    {"check", 4, "signcheck check order.xml --format CFONB/160 " EXIT_TERMS ACCEPTED},
    {"batch", 0, "signcheck batch orders --format auto " EXIT_TERMS ACCEPTED},
    {"batch", 1,
     "cp refused.xml orders; signcheck batch orders --format auto " EXIT_TERMS ACCEPTED},
    {"batch", 2, "signcheck batch orders --format auto " EXIT_TERMS UNKNOWN},
    {"batch", 3,
     "echo nothing >orders/x; signcheck batch orders --format auto " EXIT_TERMS ACCEPTED},
    {"batch", 4, "signcheck batch orders --format CFONB/160 " EXIT_TERMS ACCEPTED},
    {"watch", 0, "signcheck watch orders --format auto " EXIT_TERMS ACCEPTED},
    {"watch", 3, "signcheck watch orders --format auto " EXIT_TERMS ACCEPTED NO_BANK},
    {"amounts", 0, "signcheck amounts order.xml"},
    {"amounts", 1, "signcheck amounts faulty.xml"},
    {"amounts", 3, "signcheck amounts people.csv"},
    {"display", 0, "signcheck display order.xml"},
    {"display", 1, "signcheck display faulty.xml"},
    {"display", 3, "signcheck display people.csv"},
    {"convert", 0, "signcheck convert order.xml"},
    {"convert", 1, "signcheck convert faulty.xml"},
    {"convert", 3, "signcheck convert people.csv"},
    {"map", 0, "signcheck map C-1001"},
    {"map", 1, "signcheck map C-0000"},
    {"map", 3, "signcheck map C-1001 " NO_BANK},
    {"lint", 0, "signcheck lint C-2002"},
    {"lint", 1, "signcheck lint"},
    {"lint", 3, "signcheck lint " NO_BANK},
    {"simulate", 0, "signcheck simulate C-1001 " ACCEPTED AMOUNTS},
    {"simulate", 1, "signcheck simulate C-1001 --signers 'Hélène Garçon' " AMOUNTS},
    {"simulate", 2, "signcheck simulate C-1001 " UNKNOWN AMOUNTS},
    {"simulate", 3, "signcheck simulate C-1001 " ACCEPTED AMOUNTS NO_BANK},
    {"explain", 0, "signcheck explain check.trace"},
    {"explain", 1, "signcheck explain people.csv"},
    {"explain", 3, "signcheck explain check.trace >/dev/full"},
    {"pending", 0, "signcheck pending C-2002 --signers 'Käthe Schröder' " AMOUNTS},
    {"pending", 1, "signcheck pending C-1001 " UNKNOWN AMOUNTS},
    {"pending", 3, "signcheck pending C-1001 " ACCEPTED AMOUNTS NO_BANK},
    {"rules export", 0, "signcheck rules export"},
    {"rules export", 1, "signcheck rules export --contract C-0000"},
    {"rules export", 3, "signcheck rules export " NO_BANK},
    {"rules validate", 0, "signcheck rules validate rules.toml"},
    {"rules validate", 1, "echo '[[holder]]' >x.toml; signcheck rules validate x.toml"},
    {"rules validate", 3, "signcheck rules validate rules.toml " NO_BANK},
    {"rules diff", 0, "signcheck rules diff rules.toml"},
    {"rules diff", 1, "signcheck rules diff holder.toml"},
    {"rules diff", 3, "signcheck rules diff rules.toml " NO_BANK},
    {"rules apply", 0, "signcheck rules apply holder.toml --yes"},
    {"rules apply", 1, ANSWERED_NO("signcheck rules apply holder.toml")},
    {"rules apply", 3, "signcheck rules apply rules.toml --yes " NO_BANK},
    {"rules import-holders", 0, "signcheck rules import-holders people.csv"},
    {"rules import-holders", 1, "signcheck rules import-holders rules.toml"},
    {"rules import-holders", 3, "signcheck rules import-holders people.csv " NO_BANK},
    {"history", 0, "signcheck history"},
    {"history", 3, "signcheck history " NO_BANK},
    {"events", 0, "signcheck events"},
    {"events", 3, "signcheck events " NO_BANK},
    {"reports", 0, "signcheck reports"},
    {"reports", 3, "signcheck reports --hand-off none"},
    {"report check", 0, "signcheck report check handoff/STATUS/DUPONTSA/1.psr"},
    {"report check", 1, "signcheck report check order.xml"},
    {"report check", 3, "signcheck report check handoff/STATUS/DUPONTSA/1.psr >/dev/full"},
    {"replay", 0, "signcheck replay --rules rules.toml"},
    {"replay", 1, "sed 's/50000/10000/' rules.toml >x.toml; signcheck replay --rules x.toml"},
    {"replay", 3, "signcheck replay --rules rules.toml " NO_BANK},
    {"init", 0, "signcheck init"},
    {"init", 1,
     "sqlite3 bank.db \"INSERT INTO SSR_VERSION (VERSION, NAME) VALUES (999, 'x')\"; "
     "signcheck init"},
    {"init", 3, "signcheck init --db 'Driver=none;Database=none'"},
    {"doctor", 0, "signcheck doctor"},
    {"doctor", 1, "signcheck doctor " NO_BANK},
    {"doctor", 3, "signcheck doctor >/dev/full"},
    {"config", 0, "signcheck config"},
    {"config", 3, "signcheck config >/dev/full"},
    {"prune", 0, "signcheck prune --before 2026-01-01 --dry-run"},
    {"prune", 1,
     "sqlite3 bank.db \"UPDATE HST_SIGNRULES SET DATETIME = '2020-01-01 10:00:00'\"; " ANSWERED_NO(
         "signcheck prune --before 2026-01-01 --export archive")},
    {"prune", 3, "signcheck prune --before 2026-01-01 --dry-run " NO_BANK},
};

class PosixExitStatuses : public ShellWorldTest
{
protected:
    PosixExitStatuses()
    {
        fs::copy_file(std::string(SIGNUTILS_CORPUS) + "/pain001_wrong_sum.xml",
                      m_world + "/faulty.xml");
        m_folder.Write("world/holder.toml", "[[holder]]\nhuid = \"N-1\"\n");
    }
};

/// The statuses of a command, but for wrong usage, which every one has.
std::set<int> StatusesOf(const host::CommandSpec& command)
{
    std::set<int> statuses;
    for (const host::Ending& ending : host::EndingsOf(command))
    {
        statuses.insert(ending.status);
    }
    statuses.erase(host::kUsage);
    return statuses;
}

TEST_F(PosixExitStatuses, CanBeHad)
{
    for (const Case& each : kCases)
    {
        const std::string line = each.line;
        const bool isStopped = line.starts_with("signcheck watch") && each.status == host::kDone;
        const Answer answer = isStopped ? RunUntil("ACCEPTED", line) : RunInCopy(line);
        EXPECT_EQ(answer.status, each.status) << each.line << "\n"
                                              << answer.output << answer.errors;
    }
}

TEST_F(PosixExitStatuses, OfWrongUsageIsTheSameForEveryCommand)
{
    for (const host::CommandSpec& command : host::Commands())
    {
        EXPECT_EQ(RunInCopy(std::string("signcheck ") + command.name + " --nonsense").status,
                  host::kUsage);
    }
    EXPECT_EQ(RunInCopy("signcheck nonsense").status, host::kUsage);
}

TEST(ExitStatusTable, NamesForEachCommandTheStatusesThatAreTried)
{
    std::map<std::string, std::set<int>> tried;
    for (const Case& each : kCases)
    {
        tried[each.command].insert(each.status);
    }
    for (const host::CommandSpec& command : host::Commands())
    {
        EXPECT_EQ(tried[command.name], StatusesOf(command)) << command.name;
    }
}

TEST(ExitStatusTable, HasOnlyStatusesThatStandForSomething)
{
    std::set<int> every;
    for (const host::Ending& ending : host::EveryEnding())
    {
        every.insert(ending.status);
    }
    EXPECT_EQ(every, (std::set<int>{host::kDone, host::kFindings, host::kNoRule, host::kCouldNotRun,
                                    host::kAmountsUnknown, host::kUsage}));
    for (const host::CommandSpec& command : host::Commands())
    {
        for (const host::Ending& ending : host::EndingsOf(command))
        {
            EXPECT_EQ(every.count(ending.status), 1U) << command.name;
        }
    }
}

// | `watch` | 0 stopped by a signal |
std::string RowOf(const host::CommandSpec& command)
{
    std::string endings;
    for (const host::Ending& ending : command.endings)
    {
        endings +=
            (endings.empty() ? "" : "; ") + std::to_string(ending.status) + " " + ending.meaning;
    }
    return endings.empty() ? "" : std::string("| `") + command.name + "` | " + endings + " |\n";
}

TEST(ExitStatusTable, IsThatOfTheDocuments)
{
    const std::string page = ReadWholeFile(std::string(SIGNUTILS_SOURCES) + "/docs/signcheck.md");
    for (const host::CommandSpec& command : host::Commands())
    {
        EXPECT_THAT(page, HasSubstr(RowOf(command)));
    }
}

} // namespace
} // namespace testing_support
