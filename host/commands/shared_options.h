#pragma once

#include "host/command_table.h"
#include "host/output_format.h"

namespace host
{

// Options that commands of several families have.

inline constexpr OptionSpec kDb = {
    "db", OptionKind::Text, "CONN",
    "ODBC connection string; else SIGNCHECK_DB, else field db of a settings file, which both keep "
    "its password out of the process list"};
inline constexpr OptionSpec kConfig = {
    kConfigOption, OptionKind::Text, "FILE",
    "settings file (TOML) in place of the user's own; mode 600 when its db holds a password"};
inline constexpr OptionSpec kJson = {"json", OptionKind::Flag, "",
                                     "print one JSON object on standard output and nothing else"};
inline constexpr OptionSpec kAnswerFormat = {
    kOutputFormatOption,
    OptionKind::Text,
    "F",
    "table, for people; json, as --json; ndjson: the same object on one line",
    false,
    "table|json|ndjson",
    kOutputFormatAlias};
/// Where --format is the format of the order file.
inline constexpr OptionSpec kOrderAnswerFormat = {
    kOutputFormatOption, OptionKind::Text, "F", kAnswerFormat.help, false, kAnswerFormat.choices};
/// Of --format where it is the format of the order file.
inline constexpr const char* kOrderFormatChoices =
    "auto|ISO20022/pain.001|ISO20022/pain.008|CFONB/160|CFONB/320|SWIFT/MT101";
inline constexpr OptionSpec kYes = {"yes", OptionKind::Flag, "",
                                    "do not ask; needed where standard input is no terminal"};

inline constexpr OptionSpec kSigners = {"signers", OptionKind::Text, "\"A;B\"",
                                        "certificate names, separated by ;"};
inline constexpr OptionSpec kTotal = {"total", OptionKind::Amount, "X",
                                      "total amount of the file, such as 1500.00"};
inline constexpr OptionSpec kLargest = {"largest", OptionKind::Amount, "Y",
                                        "largest single order of the file"};
inline constexpr OptionSpec kCurrency = {"currency", OptionKind::Text, "CUR",
                                         "currency of both amounts, such as EUR"};
inline constexpr OptionSpec kVeu = {"veu", OptionKind::Flag, "",
                                    "distributed signatures, which arrive one by one"};
inline constexpr OptionSpec kExplain = {
    "explain", OptionKind::Flag, "",
    "also tell the decision rule by rule, and which smallest changes "
    "would have been accepted"};
inline constexpr OptionSpec kExplainedHtml = {
    "html", OptionKind::Text, "FILE",
    "with --explain also write the explanation as one page that "
    "needs no network and prints well"};
inline constexpr OptionSpec kHandOff = {"hand-off", OptionKind::Text, "DIR",
                                        "folder that status reports are handed on to"};

} // namespace host
