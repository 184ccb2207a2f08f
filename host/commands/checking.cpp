#include "host/batch/batch_command.h"
#include "host/batch/options.h"
#include "host/batch/watch_command.h"
#include "host/check_command.h"
#include "host/commands/families.h"
#include "host/commands/shared_options.h"
#include "host/exit_status.h"

namespace host
{

namespace
{

std::vector<OptionSpec> CheckOptions()
{
    return {
        {"file", OptionKind::Text, "FILE", "the order file to judge", true},
        kDb,
        {"partner", OptionKind::Text, "P", "partner, at most 8 characters"},
        {"service", OptionKind::Text, "S", "service, at most 8 characters"},
        {"client", OptionKind::Text, "C", "client, at most 8 characters"},
        {"protocol", OptionKind::Number, "N", "protocol number of the contract"},
        {"type", OptionKind::Number, "N", "contract type"},
        {"requester", OptionKind::Flag, "",
         "the check runs on the requester's side, not the bank's"},
        kVeu,
        kSigners,
        {"format", OptionKind::Text, "F",
         "work the amounts out of the file, which has this format: auto, ISO20022/pain.001, "
         "ISO20022/pain.008, CFONB/160, CFONB/320 or SWIFT/MT101",
         false, kOrderFormatChoices},
        {"total", OptionKind::Amount, "X",
         "without --format: total amount of the file, such as 1500.00"},
        kLargest,
        kCurrency,
        {"psr-service", OptionKind::Text, "S",
         "on a refusal hand on a status report under this service, at most 8 characters"},
        {"party", OptionKind::Text, "BIC", "bank that issues the status report"},
        {"order-id", OptionKind::Text, "ID", "identifier of the order"},
        {"message-name", OptionKind::Text, "NAME",
         "message name of the order, such as pain.001.001.03"},
        {"message-id", OptionKind::Text, "ID", "identifier of the status report"},
        kHandOff,
        {"file-id", OptionKind::Number, "N", "identifier of the order file in the file store"},
        {"request", OptionKind::Text, "REF", "reference of the request, kept with the audit event"},
        {"log", OptionKind::Text, "FILE", "log file: gains a line, and the audit event names it"},
        {"trace", OptionKind::Text, "FILE", "trace file, appended to"},
        kExplain,
        kExplainedHtml,
        kOrderAnswerFormat,
        kConfig,
        kJson,
    };
}

} // namespace

CommandFamily CheckingCommands()
{
    return {
        "Judging order files",
        {
            {"check",
             "Judge the signatures of one order file",
             CheckOptions(),
             RunCheck,
             {{"An order file whose amounts are worked out from it",
               "signcheck check order.xml --partner DUPONTSA --service CCT --client TRESOR "
               "--protocol 9 --type 1 --signers \"Élodie Lefèvre\" --format auto"},
              {"The same with amounts given, and the decision told rule by rule",
               "signcheck check order.xml --partner DUPONTSA --service CCT --client TRESOR "
               "--protocol 9 --type 1 --signers \"Élodie Lefèvre\" --total 64200.00 "
               "--largest 20000.00 --currency EUR --explain"}},
             {{kDone, "accepted"},
              {kFindings, "refused by a rule"},
              {kNoRule, "no rule of the contract concerns the signers"},
              {kAmountsUnknown, "accepted on amounts that could not be worked out"}}},
            {"batch",
             "Judge the signatures of many order files, each once",
             batch::BatchOptions(CheckOptions()),
             batch::RunBatch,
             {{"Every order of a folder, with the same terms for all",
               "signcheck batch orders --partner DUPONTSA --service CCT --client TRESOR "
               "--protocol 9 --type 1 --signers \"Élodie Lefèvre\" --format auto --jobs 2"}},
             {{kDone, "every order accepted, or judged before"},
              {kFindings, "an order was refused"},
              {kNoRule, "for an order no rule concerns the signers"},
              {kCouldNotRun, "an order could not be judged, or some were left"},
              {kAmountsUnknown, "an order was accepted on amounts that could not be worked out"}}},
            {"watch",
             "Judge the order files that come into a folder, each once",
             batch::WatchOptions(CheckOptions()),
             batch::RunWatch,
             {{"Orders whose terms lie beside them, until it is told to end",
               "signcheck watch orders --sidecar --partner DUPONTSA --service CCT --client TRESOR "
               "--protocol 9 --type 1 --signers \"Élodie Lefèvre\" --format auto"}},
             {{kDone, "stopped by a signal"}}},
        },
    };
}

} // namespace host
