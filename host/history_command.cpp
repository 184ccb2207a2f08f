#include "host/history_command.h"

#include "database/cdatabase.h"
#include "host/connection.h"
#include "host/exit_status.h"
#include "host/output.h"
#include "host/query.h"
#include "host/query_options.h"
#include "host/table.h"
#include "host/text.h"
#include "support/codepage.h"
#include "support/messages.h"
#include "support/numbers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>

namespace host
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr Choice kVerdicts[] = {{"success", 1}, {"refused", 2}, {"no-rule", 0}};
constexpr std::size_t kReasonWidth = 60;
constexpr std::size_t kFileWidth = 32;
constexpr std::size_t kSignerWidth = 24;

const std::vector<std::string> kColumns = {
    "ROWNO",   "DATETIME", "SERVER",   "STATUT",  "VPNAME",    "TYPE_PTC",
    "VFNAME",  "VCNAME",   "IDFICVFS", "ORDERID", "TYPE_CTRL", "SIGNER1",
    "SIGNER2", "MOTIF",    "CNS",      "TOTAL",   "MAXORDER",  "FILENAME"};

std::string Statement(const Conditions& conditions)
{
    std::string columns;
    for (const std::string& column : kColumns)
    {
        columns += (columns.empty() ? "" : ", ") + column;
    }
    return "SELECT " + columns + " FROM HST_SIGNRULES" + conditions.Clause() +
           " ORDER BY ROWNO DESC";
}

std::string VerdictName(const std::string& statut)
{
    for (const Choice& verdict : kVerdicts)
    {
        if (statut == std::to_string(verdict.number))
        {
            return verdict.name;
        }
    }
    return statut;
}

std::string Trimmed(std::string text)
{
    text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

// MOTIF joins reason and message by " : ", also where one of them is empty.
std::string Reason(const std::string& motif)
{
    std::string reason = Trimmed(motif);
    if (reason.rfind(": ", 0) == 0)
    {
        reason.erase(0, 2);
    }
    if (reason.size() >= 2 && reason.compare(reason.size() - 2, 2, " :") == 0)
    {
        reason.erase(reason.size() - 2);
    }
    return reason == ":" ? std::string() : reason;
}

std::string Signers(const QueryRow& row)
{
    const std::string first = Trimmed(row.at("SIGNER1"));
    const std::string second = Trimmed(row.at("SIGNER2"));
    return second.empty() ? first : first + ", " + second;
}

std::string Amount(const std::string& text)
{
    return support::Utf8FromWide(support::AmountText(support::ToDouble(text.c_str())));
}

Json RowAsJson(const QueryRow& row)
{
    const auto number = [&row](const char* column)
    { return support::ToInt64(row.at(column).c_str()); };
    const std::string verdict = row.at("STATUT");
    return {
        {"row", number("ROWNO")},
        {"time", row.at("DATETIME")},
        {"verdict", support::ToInt32(verdict.c_str())},
        {"outcome", VerdictName(verdict)},
        {"partner", row.at("VPNAME")},
        {"service", row.at("VFNAME")},
        {"client", row.at("VCNAME")},
        {"protocol", number("TYPE_PTC")},
        {"side", number("SERVER") != 0 ? "server" : "requester"},
        {"orderId", row.at("ORDERID")},
        {"fileId", number("IDFICVFS")},
        {"control", number("TYPE_CTRL")},
        {"signer1", Trimmed(row.at("SIGNER1"))},
        {"signer2", Trimmed(row.at("SIGNER2"))},
        {"reason", row.at("MOTIF")},
        {"signers", row.at("CNS")},
        {"total", support::ToDouble(row.at("TOTAL").c_str())},
        {"largestOrder", support::ToDouble(row.at("MAXORDER").c_str())},
        {"file", row.at("FILENAME")},
    };
}

std::string AsTable(const std::vector<QueryRow>& rows)
{
    Table table;
    table.AddColumn("ROW", Table::Align::Right);
    table.AddColumn("TIME");
    table.AddColumn("VERDICT");
    table.AddColumn("CONTRACT");
    table.AddColumn("ORDER");
    table.AddColumn("SIGNERS", Table::Align::Left, kSignerWidth);
    table.AddColumn("TOTAL", Table::Align::Right);
    table.AddColumn("LARGEST", Table::Align::Right);
    table.AddColumn("REASON", Table::Align::Left, kReasonWidth);
    table.AddColumn("FILE");
    for (const QueryRow& row : rows)
    {
        table.AddRow({row.at("ROWNO"), row.at("DATETIME"), VerdictName(row.at("STATUT")),
                      row.at("VPNAME") + "/" + row.at("VFNAME") + "/" + row.at("VCNAME"),
                      row.at("ORDERID"), Signers(row), Amount(row.at("TOTAL")),
                      Amount(row.at("MAXORDER")), Reason(row.at("MOTIF")),
                      ShortenedPath(row.at("FILENAME"), kFileWidth)});
    }
    return table.Text();
}

Conditions ConditionsFrom(const OptionValues& values)
{
    Conditions conditions;
    FilterBy(values, "partner", "VPNAME", conditions);
    FilterBy(values, "service", "VFNAME", conditions);
    FilterBy(values, "client", "VCNAME", conditions);
    FilterBy(values, "order-id", "ORDERID", conditions);
    FilterBy(values, "file", "FILENAME", conditions);
    if (const OptionValue* verdict = values.Find("verdict"); verdict != nullptr)
    {
        conditions.Equal("STATUT",
                         std::to_string(ChoiceFrom(*verdict, kVerdicts, std::size(kVerdicts))));
    }
    FilterByTime(values, "DATETIME", conditions);
    return conditions;
}

} // namespace

int RunHistory(const OptionValues& values)
{
    const Connection connection = ConnectionFrom(values);
    const Conditions conditions = ConditionsFrom(values);
    const std::size_t limit = LimitFrom(values);
    CDatabase database;
    OpenDatabase(database, connection, false);
    RequireTable(database, connection, "HST_SIGNRULES", "STATUT");

    std::vector<QueryRow> rows;
    bool hasMore = false;
    ForEachRow(database, connection, Statement(conditions), kColumns,
               [&](const QueryRow& row)
               {
                   hasMore = rows.size() == limit;
                   if (!hasMore)
                   {
                       rows.push_back(row);
                   }
                   return !hasMore;
               });

    if (values.IsOn("json"))
    {
        Json list = Json::array();
        for (const QueryRow& row : rows)
        {
            list.push_back(RowAsJson(row));
        }
        PrintJson({{"rows", list}, {"more", hasMore}});
        return kDone;
    }
    Print(rows.empty() ? std::string("No history row fits.\n") : AsTable(rows));
    if (hasMore)
    {
        Print("There are more; --limit shows them.\n");
    }
    return kDone;
}

} // namespace host
