#include "host/command_table.h"

#include "host/amounts_command.h"
#include "host/check_command.h"
#include "host/convert_command.h"
#include "host/display_command.h"
#include "host/events_command.h"
#include "host/explain/explain_command.h"
#include "host/history_command.h"
#include "host/init_command.h"
#include "host/lint_command.h"
#include "host/map_command.h"
#include "host/pending_command.h"
#include "host/reports_command.h"
#include "host/rulebook/apply_command.h"
#include "host/rulebook/diff_command.h"
#include "host/rulebook/export_command.h"
#include "host/rulebook/import_holders_command.h"
#include "host/rulebook/validate_command.h"
#include "host/simulate_command.h"

#include <algorithm>

namespace host
{

namespace
{

constexpr const char* kRules = "rules";

constexpr OptionSpec kDb = {"db", OptionKind::Text, "CONN",
                            "ODBC connection string; else SIGNCHECK_DB, else field db of "
                            "--config, which both keep its password out of the process list"};
constexpr OptionSpec kConfig = {
    kConfigOption, OptionKind::Text, "FILE",
    "TOML file that any option can also come from; mode 600 when its db "
    "holds a password"};
constexpr OptionSpec kJson = {"json", OptionKind::Flag, "",
                              "print one JSON object on standard output and nothing else"};
constexpr OptionSpec kSince = {"since", OptionKind::Text, "TIME",
                               "from this local time on: 2026-03-29 or \"2026-03-29 14:05\""};
constexpr OptionSpec kUntil = {"until", OptionKind::Text, "TIME",
                               "up to this local time, itself included"};
constexpr OptionSpec kLimit = {"limit", OptionKind::Number, "N",
                               "at most N, the newest first; 50 when not given"};

constexpr OptionSpec kOrderFile = {"file", OptionKind::Text, "FILE", "the order file to read",
                                   true};
constexpr OptionSpec kFormat = {"format", OptionKind::Text, "F",
                                "ISO20022/pain.001, ISO20022/pain.008, CFONB/160, CFONB/320 or "
                                "SWIFT/MT101; auto, as when not given: recognised from the file"};

constexpr OptionSpec kContract = {"contract", OptionKind::Text, "CONTRACT",
                                  "identifier of the contract (CUID)", true};
constexpr OptionSpec kContractOrAll = {"contract", OptionKind::Text, "CONTRACT",
                                       "identifier of the contract (CUID); else all of them", true};
constexpr OptionSpec kHtml = {"html", OptionKind::Text, "FILE",
                              "also write one page that needs no network and prints well"};
constexpr OptionSpec kExplain = {"explain", OptionKind::Flag, "",
                                 "also tell the decision rule by rule, and which smallest changes "
                                 "would have been accepted"};
constexpr OptionSpec kExplainedHtml = {"html", OptionKind::Text, "FILE",
                                       "with --explain also write the explanation as one page that "
                                       "needs no network and prints well"};
constexpr OptionSpec kRuleFile = {"file", OptionKind::Text, "FILE", "the rule file", true};

constexpr OptionSpec kRemove = {"remove", OptionKind::Flag, "",
                                "take away the holders and contracts that the file does not name; "
                                "without it they stay as they are"};

constexpr OptionSpec kSigners = {"signers", OptionKind::Text, "\"A;B\"",
                                 "certificate names, separated by ;"};
constexpr OptionSpec kTotal = {"total", OptionKind::Amount, "X",
                               "total amount of the file, such as 1500.00"};
constexpr OptionSpec kLargest = {"largest", OptionKind::Amount, "Y",
                                 "largest single order of the file"};
constexpr OptionSpec kCurrency = {"currency", OptionKind::Text, "CUR",
                                  "currency of both amounts, such as EUR"};
constexpr OptionSpec kVeu = {"veu", OptionKind::Flag, "",
                             "distributed signatures, which arrive one by one"};
constexpr OptionSpec kTypeAskedFor = {"type", OptionKind::Number, "N",
                                      "order type; else every one that the contract has terms for"};

constexpr OptionSpec kPartnerFilter = {"partner", OptionKind::Text, "P", "of this partner only"};
constexpr OptionSpec kServiceFilter = {"service", OptionKind::Text, "S", "of this service only"};
constexpr OptionSpec kClientFilter = {"client", OptionKind::Text, "C", "of this client only"};
constexpr OptionSpec kOrderFilter = {"order-id", OptionKind::Text, "ID", "of this order only"};

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
         "ISO20022/pain.008, CFONB/160, CFONB/320 or SWIFT/MT101"},
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
        {"hand-off", OptionKind::Text, "DIR", "folder that status reports are handed on to"},
        {"file-id", OptionKind::Number, "N", "identifier of the order file in the file store"},
        {"request", OptionKind::Text, "REF", "reference of the request, kept with the audit event"},
        {"log", OptionKind::Text, "FILE", "log file: gains a line, and the audit event names it"},
        {"trace", OptionKind::Text, "FILE", "trace file, appended to"},
        kExplain,
        kExplainedHtml,
        kConfig,
        kJson,
    };
}

std::vector<CommandSpec> MakeCommands()
{
    return {
        {"init",
         "Create the tables that are missing",
         {kDb,
          {"sample", OptionKind::Flag, "", "add a sample bank to try the checks on"},
          kConfig,
          kJson},
         RunInit},
        {"check", "Judge the signatures of one order file", CheckOptions(), RunCheck},
        {"amounts",
         "Show the amounts of one order file",
         {kOrderFile, kFormat, kConfig, kJson},
         RunAmounts},
        {"display",
         "Show the orders of one order file, as CtlVEU.INI lays them out",
         {kOrderFile, kFormat, kConfig, kJson},
         RunDisplay},
        {"convert",
         "Convert one order file into its work files",
         {kOrderFile,
          kFormat,
          {"keep", OptionKind::Flag, "", "leave the six work files beside the order file"},
          kConfig,
          kJson},
         RunConvert},
        {"map",
         "Show who may release what under one contract",
         {kContract, kDb, kHtml, kConfig, kJson},
         RunMap},
        {"lint",
         "Show what the authors of rules may not have meant",
         {kContractOrAll, kDb, kConfig, kJson},
         RunLint},
        {"simulate",
         "Judge an order that nobody has made",
         {kContract, kDb, kSigners, kTotal, kLargest, kCurrency, kVeu, kTypeAskedFor, kExplain,
          kExplainedHtml, kConfig, kJson},
         RunSimulate},
        {"explain",
         "Tell the checks of a trace file rule by rule",
         {{"file", OptionKind::Text, "TRACE", "a file that check --trace has written", true},
          kHtml,
          kConfig,
          kJson},
         RunExplain},
        {"pending",
         "Show who can still complete a distributed order",
         {kContract, kDb, kSigners, kTotal, kLargest, kCurrency, kTypeAskedFor, kConfig, kJson},
         RunPending},
        {"history",
         "Show the decisions recorded",
         {kDb,
          kPartnerFilter,
          kServiceFilter,
          kClientFilter,
          kOrderFilter,
          {"verdict", OptionKind::Text, "V", "success, refused or no-rule only (or 1, 2, 0)"},
          {"file", OptionKind::Text, "FILE",
           "of this order file only, as it was given to the check"},
          kSince,
          kUntil,
          kLimit,
          kConfig,
          kJson},
         RunHistory},
        {"events",
         "Show the audit events",
         {kDb,
          kPartnerFilter,
          kServiceFilter,
          kClientFilter,
          kOrderFilter,
          {"level", OptionKind::Text, "L", "information, error or refusal only (or 0, 1, 2)"},
          {"request", OptionKind::Text, "REF", "of this request only"},
          kSince,
          kUntil,
          kLimit,
          kConfig,
          kJson},
         RunEvents},
        {"reports",
         "Show the status reports handed on",
         {{"hand-off", OptionKind::Text, "DIR", "folder that status reports are handed on to"},
          kPartnerFilter,
          kServiceFilter,
          kOrderFilter,
          {"text", OptionKind::Flag, "", "print each document as well"},
          kSince,
          kUntil,
          kLimit,
          kConfig,
          kJson},
         RunReports},
        {"rules export",
         "Print holders, contracts and rules as a rule file (TOML)",
         {kDb,
          {"contract", OptionKind::Text, "CUID",
           "this contract only, with the holders whom its rules name"},
          kConfig},
         rulebook::RunExport,
         "signcheck rules export --contract C-1001 --db \"Driver=SQLite3;Database=bank.db\" > "
         "rules.toml"},
        {"rules validate",
         "List every problem of a rule file",
         {kRuleFile,
          {"db", OptionKind::Text, "CONN",
           "database whose holders rules may name as well as those of the file"},
          kConfig,
          kJson},
         rulebook::RunValidate,
         "signcheck rules validate rules.toml"},
        {"rules diff",
         "Show what a rule file would change in the database",
         {kRuleFile,
          kDb,
          kRemove,
          {"effect", OptionKind::Flag, "",
           "also show which orders would be decided otherwise, as signcheck map would"},
          kConfig,
          kJson},
         rulebook::RunDiff,
         "signcheck rules diff rules.toml --effect --db \"Driver=SQLite3;Database=bank.db\""},
        {"rules apply",
         "Make the database what a rule file says, all or nothing",
         {kRuleFile,
          kDb,
          kRemove,
          {"yes", OptionKind::Flag, "", "do not ask; needed where standard input is no terminal"},
          kConfig,
          kJson},
         rulebook::RunApply,
         "signcheck rules apply rules.toml --db \"Driver=SQLite3;Database=bank.db\""},
        {"rules import-holders",
         "Add holders and certificates of a CSV file",
         {{"file", OptionKind::Text, "FILE",
           "the CSV file; its first line names the columns: huid, partner, first-name, last-name, "
           "opposition, certificate, serial, expires",
           true},
          kDb,
          {"rejects", OptionKind::Text, "FILE",
           "keep the lines that cannot be imported here, and import the others"},
          kConfig,
          kJson},
         rulebook::RunImportHolders,
         "signcheck rules import-holders people.csv --rejects rejected.csv --db "
         "\"Driver=SQLite3;Database=bank.db\""},
    };
}

} // namespace

const std::vector<CommandSpec>& Commands()
{
    static const std::vector<CommandSpec> commands = MakeCommands();
    return commands;
}

const CommandSpec* FindCommand(const std::string& name)
{
    const auto& commands = Commands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&name](const auto& command) { return name == command.name; });
    return found == commands.end() ? nullptr : &*found;
}

const char* FindGroupSummary(const std::string& word)
{
    return word == kRules ? "Keep holders, contracts and rules as files" : nullptr;
}

const OptionSpec* FindOption(const CommandSpec& command, const std::string& name)
{
    const auto found = std::find_if(command.options.begin(), command.options.end(),
                                    [&name](const auto& option) { return name == option.name; });
    return found == command.options.end() ? nullptr : &*found;
}

std::vector<std::string> CommandNames()
{
    std::vector<std::string> names;
    for (const CommandSpec& command : Commands())
    {
        names.emplace_back(command.name);
    }
    return names;
}

std::vector<std::string> OptionNames(const CommandSpec& command)
{
    std::vector<std::string> names;
    for (const OptionSpec& option : command.options)
    {
        names.emplace_back(option.name);
    }
    return names;
}

} // namespace host
