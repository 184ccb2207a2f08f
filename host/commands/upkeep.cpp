#include "host/commands/families.h"
#include "host/commands/shared_options.h"
#include "host/init_command.h"

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
              {"Bring the tables up to date", "signcheck init"}}},
        },
    };
}

} // namespace host
