#include "host/event_row.h"

#include "host/query_options.h"
#include "support/numbers.h"

#include <iterator>

namespace host
{

namespace
{

using listing::Json;

constexpr Choice kLevels[] = {{"information", 0}, {"error", 1}, {"refusal", 2}};
constexpr Choice kHeadings[] = {{"NOT FOUND", 0}, {"SUCCESS", 1}, {"FAILED", 2}};

struct EventField
{
    const char* name;
    Json (*value)(const QueryRow& row, const AuditEvent& text);
};

std::string LevelName(const std::string& level)
{
    for (const Choice& known : kLevels)
    {
        if (level == std::to_string(known.number))
        {
            return known.name;
        }
    }
    return level;
}

Json OrNull(const QueryRow& row, const char* column)
{
    const std::string& value = row.at(column);
    return value.empty() ? Json(nullptr) : Json(value);
}

constexpr EventField kEventFields[] = {
    {"event",
     [](const QueryRow& row, const AuditEvent&) { return Json(NumberIn(row, "EVENTID")); }},
    {"time", [](const QueryRow& row, const AuditEvent&) { return Json(row.at("DATETIME")); }},
    {"source", [](const QueryRow& row, const AuditEvent&) { return Json(row.at("SOURCE")); }},
    {"level", [](const QueryRow& row, const AuditEvent&) { return Json(NumberIn(row, "LEVEL")); }},
    {"levelName",
     [](const QueryRow& row, const AuditEvent&) { return Json(LevelName(row.at("LEVEL"))); }},
    {"reference", [](const QueryRow& row, const AuditEvent&) { return OrNull(row, "REFERENCE"); }},
    {"partner", [](const QueryRow&, const AuditEvent& text) { return Json(text.partner); }},
    {"service", [](const QueryRow&, const AuditEvent& text) { return Json(text.service); }},
    {"client", [](const QueryRow&, const AuditEvent& text) { return Json(text.client); }},
    {"orderId", [](const QueryRow&, const AuditEvent& text) { return Json(text.orderId); }},
    {"message", [](const QueryRow&, const AuditEvent& text) { return Json(text.message); }},
    {"text", [](const QueryRow& row, const AuditEvent&) { return Json(row.at("TEXT")); }},
    {"attachmentKind",
     [](const QueryRow& row, const AuditEvent&) { return OrNull(row, "ATTACHKIND"); }},
    {"attachment",
     [](const QueryRow& row, const AuditEvent&) { return OrNull(row, "ATTACHPATH"); }},
};

listing::TableRow Shown(const QueryRow& row, const AuditEvent& text)
{
    return {{row.at("EVENTID"), row.at("DATETIME"), LevelName(row.at("LEVEL")),
             text.partner + "/" + text.service + "/" + text.client, text.orderId,
             row.at("REFERENCE")},
            LinesOf(text.message)};
}

listing::Shape MakeEventShape()
{
    using Align = Table::Align;
    listing::Shape shape;
    shape.listName = "events";
    shape.fields = listing::NamesOf(kEventFields);
    shape.columns = {{"EVENT", Align::Right},   {"TIME", Align::Left},  {"LEVEL", Align::Left},
                     {"CONTRACT", Align::Left}, {"ORDER", Align::Left}, {"REQUEST", Align::Left}};
    shape.whenEmpty = "No audit event fits.";
    return shape;
}

} // namespace

const std::vector<std::string>& EventColumns()
{
    static const std::vector<std::string> columns = {
        "EVENTID", "DATETIME", "SOURCE", "LEVEL", "REFERENCE", "ATTACHKIND", "ATTACHPATH", "TEXT"};
    return columns;
}

const listing::Shape& EventShape()
{
    static const listing::Shape shape = MakeEventShape();
    return shape;
}

listing::Record EventRecord(const QueryRow& row, const AuditEvent& text)
{
    return {[&row, &text] { return listing::ValuesOf(kEventFields, row, text); },
            [&row, &text] { return Shown(row, text); }};
}

int LevelFrom(const OptionValue& value)
{
    return ChoiceFrom(value, kLevels, std::size(kLevels));
}

std::optional<int> VerdictOf(const AuditEvent& event)
{
    for (const Choice& heading : kHeadings)
    {
        if (event.message.starts_with(std::string(kCheckHeading) + heading.name))
        {
            return heading.number;
        }
    }
    return std::nullopt;
}

} // namespace host
