#include "host/history_row.h"

#include "host/query_options.h"
#include "host/text.h"
#include "support/codepage.h"
#include "support/messages.h"
#include "support/numbers.h"

#include <algorithm>
#include <iterator>

namespace host
{

namespace
{

using listing::Json;

constexpr Choice kVerdicts[] = {{"success", 1}, {"refused", 2}, {"no-rule", 0}};
constexpr std::size_t kFileWidth = 71; // behind "File "

struct HistoryField
{
    const char* name;
    Json (*value)(const QueryRow& row);
};

std::string Amount(const std::string& text)
{
    return support::Utf8FromWide(support::AmountText(support::ToDouble(text.c_str())));
}

// As the words have it: what a sum of doubles carries behind its last unit is left out.
Json Decimal(const QueryRow& row, const char* column)
{
    return support::ToDouble(Amount(row.at(column)).c_str());
}

std::string WithoutPadding(std::string text)
{
    text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

constexpr HistoryField kHistoryFields[] = {
    {"row", [](const QueryRow& row) { return Json(NumberIn(row, "ROWNO")); }},
    {"time", [](const QueryRow& row) { return Json(row.at("DATETIME")); }},
    {"verdict", [](const QueryRow& row) { return Json(NumberIn(row, "STATUT")); }},
    {"outcome", [](const QueryRow& row) { return Json(VerdictName(row.at("STATUT"))); }},
    {"partner", [](const QueryRow& row) { return Json(row.at("VPNAME")); }},
    {"service", [](const QueryRow& row) { return Json(row.at("VFNAME")); }},
    {"client", [](const QueryRow& row) { return Json(row.at("VCNAME")); }},
    {"protocol", [](const QueryRow& row) { return Json(NumberIn(row, "TYPE_PTC")); }},
    {"side", [](const QueryRow& row)
     { return Json(NumberIn(row, "SERVER") != 0 ? "server" : "requester"); }},
    {"orderId", [](const QueryRow& row) { return Json(row.at("ORDERID")); }},
    {"fileId", [](const QueryRow& row) { return Json(NumberIn(row, "IDFICVFS")); }},
    {"control", [](const QueryRow& row) { return Json(NumberIn(row, "TYPE_CTRL")); }},
    {"signer1", [](const QueryRow& row) { return Json(WithoutPadding(row.at("SIGNER1"))); }},
    {"signer2", [](const QueryRow& row) { return Json(WithoutPadding(row.at("SIGNER2"))); }},
    {"reason", [](const QueryRow& row) { return Json(row.at("MOTIF")); }},
    {"signers", [](const QueryRow& row) { return Json(row.at("CNS")); }},
    {"total", [](const QueryRow& row) { return Decimal(row, "TOTAL"); }},
    {"largestOrder", [](const QueryRow& row) { return Decimal(row, "MAXORDER"); }},
    {"file", [](const QueryRow& row) { return Json(row.at("FILENAME")); }},
};

// MOTIF joins reason and message by " : ", also where one of them is empty.
std::string Reason(const std::string& motif)
{
    std::string reason = WithoutPadding(motif);
    if (reason.starts_with(": "))
    {
        reason.erase(0, 2);
    }
    if (reason.ends_with(" :"))
    {
        reason.erase(reason.size() - 2);
    }
    return reason == ":" ? std::string() : reason;
}

std::string Holders(const QueryRow& row)
{
    const std::string first = WithoutPadding(row.at("SIGNER1"));
    const std::string second = WithoutPadding(row.at("SIGNER2"));
    return second.empty() ? first : first + ", " + second;
}

// The rule's holders where the row has them, else whoever signed.
std::string SignersShown(const QueryRow& row)
{
    const std::string holders = Holders(row);
    return holders.empty() ? row.at("CNS") : holders;
}

listing::TableRow Shown(const QueryRow& row)
{
    return {{row.at("ROWNO"), row.at("DATETIME"), VerdictName(row.at("STATUT")),
             row.at("VPNAME") + "/" + row.at("VFNAME") + "/" + row.at("VCNAME"), row.at("ORDERID"),
             Amount(row.at("TOTAL"))},
            {"Signers " + SignersShown(row) + "; largest order " + Amount(row.at("MAXORDER")),
             Reason(row.at("MOTIF")), "File " + ShortenedPath(row.at("FILENAME"), kFileWidth)}};
}

listing::Shape MakeHistoryShape()
{
    using Align = Table::Align;
    listing::Shape shape;
    shape.listName = "rows";
    shape.fields = listing::NamesOf(kHistoryFields);
    shape.columns = {{"ROW", Align::Right},     {"TIME", Align::Left},  {"VERDICT", Align::Left},
                     {"CONTRACT", Align::Left}, {"ORDER", Align::Left}, {"TOTAL", Align::Right}};
    shape.whenEmpty = "No history row fits.";
    return shape;
}

} // namespace

const std::vector<std::string>& HistoryColumns()
{
    static const std::vector<std::string> columns = {
        "ROWNO",   "DATETIME", "SERVER",   "STATUT",  "VPNAME",    "TYPE_PTC",
        "VFNAME",  "VCNAME",   "IDFICVFS", "ORDERID", "TYPE_CTRL", "SIGNER1",
        "SIGNER2", "MOTIF",    "CNS",      "TOTAL",   "MAXORDER",  "FILENAME"};
    return columns;
}

const listing::Shape& HistoryShape()
{
    static const listing::Shape shape = MakeHistoryShape();
    return shape;
}

listing::Record HistoryRecord(const QueryRow& row)
{
    return {[&row] { return listing::ValuesOf(kHistoryFields, row); },
            [&row] { return Shown(row); }};
}

int VerdictFrom(const OptionValue& value)
{
    return ChoiceFrom(value, kVerdicts, std::size(kVerdicts));
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

bool AnySignerFits(const listing::TextFilter& signer, const QueryRow& row)
{
    return signer.Fits(row.at("SIGNER1")) || signer.Fits(row.at("SIGNER2")) ||
           signer.Fits(row.at("CNS"));
}

} // namespace host
