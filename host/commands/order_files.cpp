#include "host/amounts_command.h"
#include "host/commands/families.h"
#include "host/commands/shared_options.h"
#include "host/convert_command.h"
#include "host/display_command.h"
#include "host/exit_status.h"

namespace host
{

namespace
{

constexpr OptionSpec kOrderFile = {"file", OptionKind::Text, "FILE", "the order file to read",
                                   true};
constexpr OptionSpec kFormat = {"format",
                                OptionKind::Text,
                                "F",
                                "ISO20022/pain.001, ISO20022/pain.008, CFONB/160, CFONB/320 or "
                                "SWIFT/MT101; auto, as when not given: recognised from the file",
                                false,
                                kOrderFormatChoices};

} // namespace

CommandFamily OrderFileCommands()
{
    return {
        "Looking into order files",
        {
            {"amounts",
             "Show the amounts of one order file",
             {kOrderFile, kFormat, kOrderAnswerFormat, kConfig, kJson},
             RunAmounts,
             {{"Totals by remittance and currency", "signcheck amounts order.xml"},
              {"The same for a program", "signcheck amounts order.xml --json"}},
             {{kFindings, "the order file has errors"}}},
            {"display",
             "Show the orders of one order file, as CtlVEU.INI lays them out",
             {kOrderFile, kFormat, kOrderAnswerFormat, kConfig, kJson},
             RunDisplay,
             {{"Every order, below its remittance", "signcheck display order.xml"},
              {"A file whose format is known",
               "signcheck display order.xml --format ISO20022/pain.001"}},
             {{kFindings, "the order file has errors"}}},
            {"convert",
             "Convert one order file into its work files",
             {kOrderFile,
              kFormat,
              {"keep", OptionKind::Flag, "",
               "leave the six work files beside the order file, until a check of it makes its own"},
              kOrderAnswerFormat,
              kConfig,
              kJson},
             RunConvert,
             {{"What the conversion makes of a file; nothing stays", "signcheck convert order.xml"},
              {"Leave the work files", "signcheck convert order.xml --keep"}},
             {{kFindings, "the order file has errors"}}},
        },
    };
}

} // namespace host
