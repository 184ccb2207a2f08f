#include "host/commands/families.h"
#include "host/commands/shared_options.h"
#include "host/events_command.h"
#include "host/exit_status.h"
#include "host/history_command.h"
#include "host/replay/replay_command.h"
#include "host/reports_command.h"
#include "host/statusreport/check_command.h"

namespace host
{

namespace
{

constexpr OptionSpec kSince = {"since", OptionKind::Text, "TIME",
                               "from this local time on: 2026-03-29 or \"2026-03-29 14:05\""};
constexpr OptionSpec kUntil = {"until", OptionKind::Text, "TIME",
                               "up to this local time, itself included"};
constexpr OptionSpec kLimit = {"limit", OptionKind::Number, "N",
                               "at most N, the newest first; 50 when not given"};
constexpr OptionSpec kAll = {"all", OptionKind::Flag, "",
                             "every one that fits, not a page of them"};
constexpr OptionSpec kBelow = {"below", OptionKind::Number, "NUMBER",
                               "only those below this number, which the page before told"};
constexpr OptionSpec kSignerFilter = {"signer", OptionKind::Text, "NAME",
                                      "with this part of a signer's name only, in whatever case"};
constexpr OptionSpec kReasonFilter = {"reason", OptionKind::Text, "TEXT",
                                      "with this part of the reason only, in whatever case"};
constexpr OptionSpec kVerdictFilter = {"verdict", OptionKind::Text,
                                       "V",       "success, refused or no-rule only (or 1, 2, 0)",
                                       false,     "success|refused|no-rule"};
constexpr OptionSpec kAmountFrom = {"amount-from", OptionKind::Amount, "X",
                                    "with a total of at least X only, such as 1500.00"};
constexpr OptionSpec kAmountTo = {"amount-to", OptionKind::Amount, "Y",
                                  "with a total of at most Y only"};
constexpr OptionSpec kListFormat = {
    kOutputFormatOption,
    OptionKind::Text,
    "F",
    "table, for people; json: one object; ndjson: an object a line; csv: a record a row, with a "
    "line of names",
    false,
    "table|json|ndjson|csv",
    kOutputFormatAlias};
constexpr OptionSpec kPartnerFilter = {"partner", OptionKind::Text, "P", "of this partner only"};
constexpr OptionSpec kServiceFilter = {"service", OptionKind::Text, "S", "of this service only"};
constexpr OptionSpec kClientFilter = {"client", OptionKind::Text, "C", "of this client only"};
constexpr OptionSpec kReplayedRules = {"rules", OptionKind::Text, "FILE",
                                       "the rule file to judge by, such as rules export prints"};
constexpr OptionSpec kReplayRemove = {"remove", OptionKind::Flag, "",
                                      "without the holders and contracts that the file does not "
                                      "name; else they stay as they are"};
constexpr OptionSpec kReplayedType = {"type", OptionKind::Number, "N",
                                      "order type of all orders, which the history does not hold; "
                                      "else every one is tried"};
constexpr OptionSpec kVeuMode = {"veu-mode",
                                 OptionKind::Text,
                                 "MODE",
                                 "off: orders came with all signatures; on: signatures came one "
                                 "by one; the history does not hold it; else both are tried",
                                 false,
                                 "off|on"};
constexpr OptionSpec kOrderFilter = {"order-id", OptionKind::Text, "ID", "of this order only"};

} // namespace

CommandFamily LookingBackCommands()
{
    return {
        "Looking back",
        {
            {"history",
             "Show the decisions recorded",
             {kDb,
              kPartnerFilter,
              kServiceFilter,
              kClientFilter,
              kOrderFilter,
              kSignerFilter,
              kVerdictFilter,
              kAmountFrom,
              kAmountTo,
              kReasonFilter,
              {"file", OptionKind::Text, "FILE",
               "of this order file only, as it was given to the check"},
              kSince,
              kUntil,
              kBelow,
              kLimit,
              kAll,
              kListFormat,
              kConfig,
              kJson},
             RunHistory,
             {{"The newest 50", "signcheck history"},
              {"What was refused to one partner since a day",
               "signcheck history --partner DUPONTSA --verdict refused --since 2026-03-29"},
              {"Every refusal of a larger amount, for a spreadsheet",
               "signcheck history --verdict refused --amount-from 10000 --all --format csv > "
               "refused.csv"}}},
            {"events",
             "Show the audit events",
             {kDb,
              kPartnerFilter,
              kServiceFilter,
              kClientFilter,
              kOrderFilter,
              kSignerFilter,
              kVerdictFilter,
              kReasonFilter,
              {"level", OptionKind::Text, "L", "information, error or refusal only (or 0, 1, 2)",
               false, "information|error|refusal"},
              {"request", OptionKind::Text, "REF", "of this request only"},
              kSince,
              kUntil,
              kBelow,
              kLimit,
              kAll,
              kListFormat,
              kConfig,
              kJson},
             RunEvents,
             {{"Errors only", "signcheck events --level error"},
              {"What became of one request", "signcheck events --request REQ-0042"}}},
            {"reports",
             "Show the status reports handed on",
             {kHandOff,
              kPartnerFilter,
              kServiceFilter,
              kOrderFilter,
              kSignerFilter,
              {"status", OptionKind::Text, "S", "of this status only, such as RJCT", false,
               "ACTC|RCVD|PART|RJCT|PDNG|ACCP|ACSP|ACSC|ACCR|ACWC"},
              kAmountFrom,
              kAmountTo,
              {"reason", OptionKind::Text, "R",
               "with this reason code, or this part of the reason's text, only"},
              {"text", OptionKind::Flag, "", "print each document as well"},
              kSince,
              kUntil,
              kBelow,
              kLimit,
              kAll,
              kListFormat,
              kConfig,
              kJson},
             RunReports,
             {{"The newest five, with their documents", "signcheck reports --limit 5 --text"},
              {"Those about a limit that was passed", "signcheck reports --reason AM02"}}},
            {"report check",
             "Validate one status report and show it in words",
             {{"file", OptionKind::Text, "FILE", "the status report, a pain.002.001.02 document",
               true},
              kAnswerFormat,
              kConfig,
              kJson},
             statusreport::RunCheck,
             {{"One of the hand-off store",
               "signcheck report check handoff/STATUS/DUPONTSA/1.psr"}},
             {{kFindings, "the report has faults"}}},
            {"replay",
             "Judge the history again by changed rules",
             {kReplayedRules, kDb, kReplayRemove, kReplayedType, kVeuMode, kPartnerFilter,
              kServiceFilter, kClientFilter, kSince, kUntil, kAnswerFormat, kConfig, kJson},
             RunReplay,
             {{"Before a change is made", "signcheck replay --rules rules.toml"},
              {"Orders of this year that all came with type 1 and every signature",
               "signcheck replay --rules rules.toml --since 2026-01-01 --type 1 --veu-mode off"}},
             {{kDone, "no past order would be decided otherwise"},
              {kFindings, "some would, or the rule file has errors"}}},
        },
        {{"report", "Look into one status report"}},
    };
}

} // namespace host
