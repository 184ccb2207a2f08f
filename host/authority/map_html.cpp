#include "host/authority/map_text.h"
#include "host/html_page.h"

#include <algorithm>

namespace authority
{

namespace
{

// As many columns as a sheet of paper takes; further ones stand in a table below.
constexpr std::size_t kBandsOnAPage = 4;

// On a narrow screen each row is a block of its own, in which every verdict stands beside its
// amounts: nothing lies outside the window.
constexpr const char* kStyle =
    "table{margin-bottom:1rem}tbody th{min-width:10rem;overflow-wrap:anywhere}"
    "td.ok{background:#d9f0dd;color:#0b4a1a}td.no{background:#f7d7d7;color:#6d0f0f;"
    "font-weight:600}td.none{color:#555}"
    "@media print{tbody th{min-width:7rem}th,td{padding:.2rem .3rem}}"
    "@media screen and (max-width:44rem){table,tbody,tr,th,td{display:block}thead{display:none}"
    "table{border:1px solid #999}tbody{border-bottom:1px solid #999}"
    "tbody:last-child{border-bottom:0}th,td{border:0}tbody th{min-width:0}td{padding:.2rem .5rem "
    ".2rem 1.2rem}"
    "td.mode{color:#555}td.mode::before{content:\"VEU \"}"
    "td[data-cell]::before{content:attr(data-cell) \": \";color:#111;font-weight:400}}";

const char* ClassOf(unsigned int verdict)
{
    switch (verdict)
    {
    case scratch::kAccepted:
        return "ok";
    case scratch::kRefused:
        return "no";
    default:
        return "none";
    }
}

/// Some of a map's columns.
struct Columns
{
    std::size_t first;
    std::size_t end;
};

std::string LineAsHtml(const AuthorityMap& map, const Line& line, const char* mode, Columns shown)
{
    std::string html = std::string("<td class=\"mode\">") + mode + "</td>";
    for (std::size_t cell = shown.first; cell < shown.end; ++cell)
    {
        const Verdict& verdict = line[cell];
        const bool hasReason = verdict.number == scratch::kRefused && !verdict.reasonCode.empty();
        html += std::string("<td class=\"") + ClassOf(verdict.number) + "\" data-cell=\"" +
                host::HtmlText(InWords(map.cells[cell])) + "\">" + OutcomeOf(verdict.number) +
                (hasReason ? " " + host::HtmlText(verdict.reasonCode) : std::string()) + "</td>";
    }
    return html;
}

std::string RowAsHtml(const AuthorityMap& map, const Row& row, Columns shown)
{
    const bool isOne = row.direct == row.distributed;
    const std::string head = "<tbody><tr><th scope=\"rowgroup\"" +
                             std::string(isOne ? "" : " rowspan=\"2\"") + ">" +
                             host::HtmlText(row.label) + "</th>";
    if (isOne)
    {
        return head + LineAsHtml(map, row.direct, "any", shown) + "</tr></tbody>\n";
    }
    return head + LineAsHtml(map, row.direct, "off", shown) + "</tr>\n<tr>" +
           LineAsHtml(map, row.distributed, "on", shown) + "</tr></tbody>\n";
}

std::string TableAsHtml(const AuthorityMap& map, Columns shown)
{
    std::string html = "<div class=\"wide\"><table>\n<thead><tr><th scope=\"col\">Signers</th>"
                       "<th scope=\"col\">VEU</th>";
    for (std::size_t cell = shown.first; cell < shown.end; ++cell)
    {
        html += "<th scope=\"col\">" + host::HtmlText(InWords(map.cells[cell])) + "</th>";
    }
    html += "</tr></thead>\n";
    for (const Row& row : map.rows)
    {
        html += IsWithoutRule(row) ? std::string() : RowAsHtml(map, row, shown);
    }
    return html + "</table></div>\n";
}

std::string MapAsHtml(const AuthorityMap& exact)
{
    const AuthorityMap map = WithoutEqualNeighbours(exact);
    std::string html = "<h2>" + host::HtmlText(TypeInWords(map)) + "</h2>\n<p>" +
                       host::HtmlText(KeyInWords(map.kind.contract)) + "</p>\n";
    if (std::all_of(map.rows.begin(), map.rows.end(),
                    [](const Row& row) { return IsWithoutRule(row); }))
    {
        return html + "<p>" + host::HtmlText(kNothingAccepted) + "</p>\n";
    }
    for (std::size_t first = 0; first < map.cells.size(); first += kBandsOnAPage)
    {
        html += TableAsHtml(map, {first, std::min(first + kBandsOnAPage, map.cells.size())});
    }
    const bool hasOthers = std::any_of(map.rows.begin(), map.rows.end(),
                                       [](const Row& row) { return IsWithoutRule(row); });
    return html +
           (hasOthers ? "<p>" + host::HtmlText(kOthersWithoutRule) + "</p>\n" : std::string()) +
           "<p>" + host::HtmlText(LargerSets(map)) + "</p>\n";
}

} // namespace

std::string AsHtml(const ContractMaps& maps)
{
    std::string body =
        "<p>Who may release what. VEU off: an order comes with all its signatures; on: they arrive "
        "one by one, and accepted means that nothing speaks against those that are there; any: "
        "both are alike.</p>\n<p>" +
        host::HtmlText(maps.provenance) + " " + std::to_string(maps.judged) +
        " orders were judged.</p>\n";
    for (const std::string& note : maps.notes)
    {
        body += "<p><strong>Note:</strong> " + host::HtmlText(note) + "</p>\n";
    }
    for (const AuthorityMap& map : maps.maps)
    {
        body += MapAsHtml(map);
    }
    return host::HtmlPage("Authority map of contract " + maps.cuid, kStyle, body);
}

} // namespace authority
