#include "host/authority/map_text.h"
#include "host/html_page.h"

namespace authority
{

namespace
{

constexpr const char* kStyle =
    "td.ok{background:#d9f0dd;color:#0b4a1a}td.no{background:#f7d7d7;color:#6d0f0f;"
    "font-weight:600}td.none{color:#555}";

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

std::string LineAsHtml(const Line& line, const char* mode)
{
    std::string html = std::string("<td>") + mode + "</td>";
    for (const Verdict& verdict : line)
    {
        html += std::string("<td class=\"") + ClassOf(verdict.number) + "\">" +
                OutcomeOf(verdict.number) +
                (verdict.reasonCode.empty() || verdict.number != scratch::kRefused
                     ? std::string()
                     : " " + host::HtmlText(verdict.reasonCode)) +
                "</td>";
    }
    return html;
}

std::string RowAsHtml(const Row& row)
{
    return "<tr><th scope=\"rowgroup\" rowspan=\"2\">" + host::HtmlText(row.label) + "</th>" +
           LineAsHtml(row.direct, "off") + "</tr>\n<tr>" + LineAsHtml(row.distributed, "on") +
           "</tr>\n";
}

std::string MapAsHtml(const AuthorityMap& exact)
{
    const AuthorityMap map = WithoutEqualNeighbours(exact);
    std::string html = "<h2>" + host::HtmlText(TypeInWords(map)) + "</h2>\n<p>" +
                       host::HtmlText(KeyInWords(map.kind.contract)) +
                       "</p>\n<div class=\"wide\"><table>\n<thead><tr><th scope=\"col\">Signers"
                       "</th><th scope=\"col\">VEU</th>";
    for (const Cell& cell : map.cells)
    {
        html += "<th scope=\"col\">" + host::HtmlText(InWords(cell)) + "</th>";
    }
    html += "</tr></thead>\n<tbody>\n";
    for (const Row& row : map.rows)
    {
        html += RowAsHtml(row);
    }
    return html + "</tbody></table></div>\n<p>" + host::HtmlText(LargerSets(map)) + "</p>\n";
}

} // namespace

std::string AsHtml(const ContractMaps& maps)
{
    std::string body =
        "<p>Who may release what. VEU off: an order comes with all its signatures; on: they arrive "
        "one by one, and accepted means that nothing speaks against those that are "
        "there.</p>\n<p>" +
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
