#include "host/commands/families.h"
#include "host/commands/shared_options.h"
#include "host/events_command.h"
#include "host/history_command.h"
#include "host/reports_command.h"

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
constexpr OptionSpec kPartnerFilter = {"partner", OptionKind::Text, "P", "of this partner only"};
constexpr OptionSpec kServiceFilter = {"service", OptionKind::Text, "S", "of this service only"};
constexpr OptionSpec kClientFilter = {"client", OptionKind::Text, "C", "of this client only"};
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
              {"verdict", OptionKind::Text, "V", "success, refused or no-rule only (or 1, 2, 0)"},
              {"file", OptionKind::Text, "FILE",
               "of this order file only, as it was given to the check"},
              kSince,
              kUntil,
              kLimit,
              kConfig,
              kJson},
             RunHistory,
             {{"The newest 50", "signcheck history"},
              {"What was refused to one partner since a day",
               "signcheck history --partner DUPONTSA --verdict refused --since 2026-03-29"}}},
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
             RunEvents,
             {{"Errors only", "signcheck events --level error"},
              {"What became of one request", "signcheck events --request REQ-0042"}}},
            {"reports",
             "Show the status reports handed on",
             {kHandOff,
              kPartnerFilter,
              kServiceFilter,
              kOrderFilter,
              {"text", OptionKind::Flag, "", "print each document as well"},
              kSince,
              kUntil,
              kLimit,
              kConfig,
              kJson},
             RunReports,
             {{"The newest five, with their documents", "signcheck reports --limit 5 --text"}}},
        },
    };
}

} // namespace host
