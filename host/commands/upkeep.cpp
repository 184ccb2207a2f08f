#include "host/commands/families.h"
#include "host/commands/shared_options.h"
#include "host/doctor/doctor_command.h"
#include "host/exit_status.h"
#include "host/init_command.h"
#include "host/prune/prune_command.h"
#include "host/settings/config_command.h"

namespace host
{

CommandFamily UpkeepCommands()
{
    return {
        "Set-up and upkeep",
        {
            {"init",
             "Create the tables that are missing",
             {kDb,
              {"sample", OptionKind::Flag, "", "add a sample bank to try the checks on"},
              kAnswerFormat,
              kConfig,
              kJson},
             RunInit,
             {{"A sample bank to try signcheck on",
               "signcheck init --sample --db \"Driver=SQLite3;Database=bank.db\""},
              {"Bring the tables up to date", "signcheck init"}},
             {{kFindings, "the tables are of another version, and nothing was changed"}}},
            {"doctor",
             "Look at everything that a check needs, and name the remedy for what is wrong",
             {{"folder", OptionKind::Text, "FOLDER",
               "also look for what a killed run left in this folder of order files", true},
              kDb,
              kHandOff,
              {"remove-leftovers", OptionKind::Text, "AGE",
               "remove copies of rules, and work files in FOLDER, that a killed command left and "
               "that are older: 90s, 30m, 12h or 2d"},
              kAnswerFormat,
              kConfig,
              kJson},
             doctor::RunDoctor,
             {{"Is everything there that a check needs?", "signcheck doctor"},
              {"The same for monitoring", "signcheck doctor --json"},
              {"What did a kill leave behind, also beside the orders?", "signcheck doctor orders"}},
             {{kFindings, "something that a check needs failed"}}},
            {"config",
             "Show every setting, where it comes from and what it hides",
             {{"command", OptionKind::Text, "COMMAND",
               "as this command takes them, \"rules export\" in quotes; else for all commands",
               true},
              kAnswerFormat,
              kConfig,
              kJson},
             RunConfig,
             {{"Every setting", "signcheck config"},
              {"Those of one command", "signcheck config \"rules export\""}}},
            {"prune",
             "Archive and remove what is from before a day",
             {kDb,
              kHandOff,
              {"before", OptionKind::Text, "DAY",
               "history rows, audit events, status reports and delivered spool lines from before "
               "this day, such as 2026-01-01"},
              {"export", OptionKind::Text, "FOLDER",
               "a new folder for what is removed; one of an interrupted prune goes on"},
              {"dry-run", OptionKind::Flag, "", "tell how much there is, and remove nothing"},
              kYes,
              kAnswerFormat,
              kConfig,
              kJson},
             prune::RunPrune,
             {{"How much there is", "signcheck prune --before 2026-01-01 --dry-run"},
              {"Archive it and remove it",
               "signcheck prune --before 2026-01-01 --export archive-2026-01-01 --yes"}},
             {{kFindings, "nothing removed: the question was not answered with yes"}}},
        },
    };
}

} // namespace host
