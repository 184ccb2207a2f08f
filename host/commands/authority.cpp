#include "host/commands/families.h"
#include "host/commands/shared_options.h"
#include "host/exit_status.h"
#include "host/explain/explain_command.h"
#include "host/lint_command.h"
#include "host/map_command.h"
#include "host/pending_command.h"
#include "host/simulate_command.h"

namespace host
{

namespace
{

constexpr OptionSpec kContract = {"contract", OptionKind::Text, "CONTRACT",
                                  "identifier of the contract (CUID)", true};
constexpr OptionSpec kContractOrAll = {"contract", OptionKind::Text, "CONTRACT",
                                       "identifier of the contract (CUID); else all of them", true};
constexpr OptionSpec kHtml = {"html", OptionKind::Text, "FILE",
                              "also write one page that needs no network and prints well"};
constexpr OptionSpec kTypeAskedFor = {"type", OptionKind::Number, "N",
                                      "order type; else every one that the contract has terms for"};

} // namespace

CommandFamily AuthorityCommands()
{
    return {
        "Who may release what, and why",
        {
            {"map",
             "Show who may release what under one contract",
             {kContract, kDb, kHtml, kAnswerFormat, kConfig, kJson},
             RunMap,
             {{"On the terminal", "signcheck map C-1001"},
              {"As a page to hand out", "signcheck map C-1001 --html map.html"}},
             {{kFindings, "there is no such contract"}}},
            {"lint",
             "Show what the authors of rules may not have meant",
             {kContractOrAll, kDb, kAnswerFormat, kConfig, kJson},
             RunLint,
             {{"One contract", "signcheck lint C-1001"}, {"All of them", "signcheck lint"}},
             {{kFindings, "there are findings, or no such contract"}}},
            {"simulate",
             "Judge an order that nobody has made",
             {kContract, kDb, kSigners, kTotal, kLargest, kCurrency, kVeu, kTypeAskedFor, kExplain,
              kExplainedHtml, kAnswerFormat, kConfig, kJson},
             RunSimulate,
             {{"May this holder release 900 euros?",
               "signcheck simulate C-1001 --signers \"Élodie Lefèvre\" --total 900 --largest 900 "
               "--currency EUR"},
              {"And why not", "signcheck simulate C-1001 --signers \"Élodie Lefèvre\" --total "
                              "60000 --largest 60000 "
                              "--currency EUR --explain"}},
             {{kDone, "accepted"},
              {kFindings, "refused by a rule, or no such contract"},
              {kNoRule, "no rule of the contract concerns the signers"}}},
            {"explain",
             "Tell the checks of a trace file rule by rule",
             {{"file", OptionKind::Text, "TRACE", "a file that check --trace has written", true},
              kHtml,
              kAnswerFormat,
              kConfig,
              kJson},
             RunExplain,
             {{"Every check of the trace", "signcheck explain check.trace"},
              {"As a page", "signcheck explain check.trace --html checks.html"}},
             {{kFindings, "the trace holds no check"}}},
            {"pending",
             "Show who can still complete a distributed order",
             {kContract,
              kDb,
              kSigners,
              kTotal,
              kLargest,
              kCurrency,
              {"order-id", OptionKind::Text, "ID",
               "signers and amounts from the history of this order instead"},
              {"file", OptionKind::Text, "FILE",
               "the same of this order file, as it was given to the check"},
              kTypeAskedFor,
              kAnswerFormat,
              kConfig,
              kJson},
             RunPending,
             {{"After the first signature",
               "signcheck pending C-2002 --signers \"Käthe Schröder\" --total 900 --largest 900 "
               "--currency EUR"}},
             {{kFindings,
               "nobody is left who can complete it, or the history does not tell who signed"}}},
        },
    };
}

} // namespace host
