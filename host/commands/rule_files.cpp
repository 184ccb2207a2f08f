#include "host/commands/families.h"
#include "host/commands/shared_options.h"
#include "host/exit_status.h"
#include "host/rulebook/apply_command.h"
#include "host/rulebook/diff_command.h"
#include "host/rulebook/export_command.h"
#include "host/rulebook/import_holders_command.h"
#include "host/rulebook/validate_command.h"

namespace host
{

namespace
{

constexpr OptionSpec kRuleFile = {"file", OptionKind::Text, "FILE", "the rule file", true};
constexpr OptionSpec kRemove = {"remove", OptionKind::Flag, "",
                                "take away the holders and contracts that the file does not name; "
                                "without it they stay as they are"};

} // namespace

CommandFamily RuleFileCommands()
{
    return {
        "Rules as files",
        {
            {"rules export",
             "Print holders, contracts and rules as a rule file (TOML)",
             {kDb,
              {"contract", OptionKind::Text, "CUID",
               "this contract only, with the holders whom its rules name"},
              kConfig},
             rulebook::RunExport,
             {{"The whole bank", "signcheck rules export > rules.toml"},
              {"One contract", "signcheck rules export --contract C-1001"}},
             {{kFindings, "there is no such contract"}}},
            {"rules validate",
             "List every problem of a rule file",
             {kRuleFile,
              {"db", OptionKind::Text, "CONN",
               "database to compare with: rules may name its holders, and nothing may collide with "
               "what "
               "the file leaves there"},
              kAnswerFormat,
              kConfig,
              kJson},
             rulebook::RunValidate,
             {{"Before anybody else sees the file", "signcheck rules validate rules.toml"}},
             {{kFindings, "the file has errors"}}},
            {"rules diff",
             "Show what a rule file would change in the database",
             {kRuleFile,
              kDb,
              kRemove,
              {"effect", OptionKind::Flag, "",
               "also show which orders would be decided otherwise, as signcheck map would"},
              kAnswerFormat,
              kConfig,
              kJson},
             rulebook::RunDiff,
             {{"Rows that would change", "signcheck rules diff rules.toml"},
              {"And what that does to orders", "signcheck rules diff rules.toml --effect"}},
             {{kFindings, "the file would change something, or has errors"}}},
            {"rules apply",
             "Make the database what a rule file says, all or nothing",
             {kRuleFile,
              kDb,
              kRemove,
              {"no-effect", OptionKind::Flag, "",
               "do not work out which orders would be decided otherwise, which takes long for a "
               "contract of many holders"},
              kYes,
              kAnswerFormat,
              kConfig,
              kJson},
             rulebook::RunApply,
             {{"After a question", "signcheck rules apply rules.toml"},
              {"From a script", "signcheck rules apply rules.toml --yes"}},
             {{kFindings, "the file has errors, or the question was not answered with yes"}}},
            {"rules import-holders",
             "Add holders and certificates of a CSV file",
             {{"file", OptionKind::Text, "FILE",
               "the CSV file; its first line names the columns: huid, partner, first-name, "
               "last-name, opposition, certificate, serial, expires",
               true},
              kDb,
              {"rejects", OptionKind::Text, "FILE",
               "keep the lines that cannot be imported here, and import the others"},
              kAnswerFormat,
              kConfig,
              kJson},
             rulebook::RunImportHolders,
             {{"All of them, or none when a line is wrong",
               "signcheck rules import-holders people.csv"},
              {"What can be imported; the rest into a file",
               "signcheck rules import-holders people.csv --rejects rejected.csv"}},
             {{kFindings, "lines were rejected, or the file cannot be imported"}}},
        },
        {{"rules", "Keep holders, contracts and rules as files"}},
    };
}

} // namespace host
