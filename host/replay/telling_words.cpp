#include "host/authority/map_text.h"
#include "host/listing/table_writer.h"
#include "host/output.h"
#include "host/paragraph.h"
#include "host/replay/telling.h"
#include "host/table.h"
#include "host/text.h"
#include "support/codepage.h"
#include "support/messages.h"

#include <algorithm>

namespace replay
{

namespace
{

using listing::Shape;
using listing::TableRow;

constexpr std::size_t kFileWidth = 71; // behind "File "

struct Section
{
    Cause cause;
    const char* title;
};

constexpr Section kSections[] = {
    {Cause::Rules, "Decided otherwise because of changed rules"},
    {Cause::Holders, "Decided otherwise because of changed holders"},
    {Cause::Both, "Decided otherwise because of changed rules and holders together"},
};

// "812,334"
std::string Grouped(std::uint64_t number)
{
    constexpr std::size_t kDigits = 3;
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > kDigits; at -= kDigits)
    {
        text.insert(at - kDigits, ",");
    }
    return text;
}

std::string Orders(std::uint64_t number)
{
    return Grouped(number) + (number == 1 ? " past order" : " past orders");
}

std::string Headline(const Tally& tally)
{
    std::string text = Grouped(tally.refused) + " of " + Orders(tally.orders) +
                       " would now be refused, " + Grouped(tally.accepted) + " newly accepted";
    text += tally.withoutRule == 0 ? "" : ", " + Grouped(tally.withoutRule) + " without a rule";
    return text + ".";
}

std::string Amount(double amount)
{
    return support::Utf8FromWide(support::AmountText(amount));
}

void AppendUncertain(std::string& text, const Tally& tally)
{
    if (tally.dependent > 0)
    {
        host::AppendParagraph(
            text, "Depends",
            Orders(tally.dependent) +
                " more would be decided otherwise only for some order types, or only with VEU off "
                "or on, which the history does not hold; the list marks which. Give --type and "
                "--veu-mode where you know them.");
    }
    if (tally.againstRecord > 0)
    {
        host::AppendParagraph(text, "Record",
                              Orders(tally.againstRecord) +
                                  " were decided otherwise at the time than the rules of the "
                                  "database would decide today. They are compared all the same: "
                                  "today's rules with the changed ones.");
    }
    if (tally.notJudged > 0)
    {
        host::AppendParagraph(text, "Left out",
                              Orders(tally.notJudged) +
                                  " could not be judged again: their rows lack a value, their list "
                                  "of signers may have been cut, or no check can name their "
                                  "contract.");
    }
}

void AppendGrouping(std::string& text, const Tally& tally)
{
    std::string words = Orders(tally.orders) + " were put together from " + Grouped(tally.rows) +
                        (tally.rows == 1 ? " history row" : " history rows");
    if (tally.maybeSeveral > 0)
    {
        words += "; " + Grouped(tally.maybeSeveral) +
                 " of them may be several (their rows repeat, or lie seconds apart)";
    }
    if (tally.maybeParts > 0)
    {
        words += "; " + Grouped(tally.maybeParts) +
                 " may be parts of others (rows of other checks stand between)";
    }
    host::AppendParagraph(text, "Grouped", words + ".");
}

std::string Summary(const Answer& answer)
{
    const Tally& tally = answer.findings.tally;
    std::string text;
    for (const std::string& line : host::Wrapped(Headline(tally), host::kTerminalColumns))
    {
        text += line + "\n";
    }
    text += "\n";
    host::AppendParagraph(text, "Compares",
                          "what the rules of the database decide today with what they would "
                          "decide as " +
                              answer.rules +
                              (answer.isUnchanged
                                   ? " has them, which is the same: the file changes nothing."
                                   : " has them."));
    AppendUncertain(text, tally);
    AppendGrouping(text, tally);
    host::AppendParagraph(text, "Exact",
                          answer.provenance + " " + Grouped(answer.judged) +
                              " orders were judged; others that no rule can tell from them are "
                              "decided alike.");
    return text;
}

std::string Decision(const JudgedWay& way)
{
    return way.before == way.after ? std::string(authority::OutcomeOf(way.before)) + " as before"
                                   : std::string(authority::OutcomeOf(way.before)) + " -> " +
                                         authority::OutcomeOf(way.after);
}

std::string WordsOf(const ToldOrder& told, std::size_t index)
{
    const std::string& reason = told.reasons[index];
    return Decision(told.judgement.counted[index]) + (reason.empty() ? "" : ". " + reason);
}

// Ways that are decided alike stand in one note; that of all of them needs no name.
std::vector<std::string> WaysInWords(const ToldOrder& told)
{
    std::vector<std::pair<std::string, std::string>> notes; // words, ways
    const auto& counted = told.judgement.counted;
    for (std::size_t index = 0; index < counted.size(); ++index)
    {
        const std::string words = WordsOf(told, index);
        auto note = std::find_if(notes.begin(), notes.end(),
                                 [&words](const auto& each) { return each.first == words; });
        if (note == notes.end())
        {
            note = notes.insert(note, {words, ""});
        }
        note->second += (note->second.empty() ? "" : "; ") + InWords(counted[index].way);
    }
    std::vector<std::string> lines;
    lines.reserve(notes.size());
    for (const auto& [words, ways] : notes)
    {
        lines.push_back(notes.size() == 1 ? words : ways + ": " + words);
    }
    return lines;
}

TableRow Shown(const ToldOrder& told)
{
    const PastCheck& check = told.check;
    TableRow row = {{std::to_string(check.newestRow), check.time,
                     check.key.vpname + "/" + check.key.vfname + "/" + check.key.vcname,
                     check.orderId, Amount(check.total)},
                    WaysInWords(told)};
    row.notes.push_back("Signers " + check.signers + "; largest order " + Amount(check.largest) +
                        (told.judgement.isAgainstRecord
                             ? std::string("; recorded as ") + authority::OutcomeOf(check.verdict)
                             : ""));
    row.notes.push_back("File " + host::ShortenedPath(check.file, kFileWidth));
    if (check.mayBeSeveral)
    {
        row.notes.push_back("May be several checks, of rows " + std::to_string(check.oldestRow) +
                            " to " + std::to_string(check.newestRow));
    }
    if (check.mayBePart)
    {
        row.notes.emplace_back("May be part of a check with a row near by");
    }
    return row;
}

Shape MakeShape()
{
    using Align = host::Table::Align;
    Shape shape;
    shape.columns = {{"ROW", Align::Right},
                     {"TIME", Align::Left},
                     {"CONTRACT", Align::Left},
                     {"ORDER", Align::Left},
                     {"TOTAL", Align::Right}};
    shape.whenEmpty = "None is left in the history.";
    return shape;
}

std::uint64_t CountOf(const Findings& findings, Cause cause)
{
    return static_cast<std::uint64_t>(
        std::count_if(findings.changes.begin(), findings.changes.end(),
                      [cause](const ChangedOrder& each) { return each.cause == cause; }));
}

std::size_t PrintSection(const Findings& findings, Cause cause, const Teller& tell)
{
    const Shape shape = MakeShape();
    listing::TableWriter writer(shape);
    std::size_t gone = 0;
    for (const ChangedOrder& change : findings.changes)
    {
        if (change.cause != cause)
        {
            continue;
        }
        if (const auto told = tell(change))
        {
            writer.Add({nullptr, [&told] { return Shown(*told); }});
        }
        else
        {
            ++gone;
        }
    }
    writer.Finish({});
    return gone;
}

} // namespace

std::size_t PrintInWords(const Answer& answer, const Teller& tell)
{
    host::Print(Summary(answer));
    std::size_t gone = 0;
    for (const Section& section : kSections)
    {
        if (const std::uint64_t count = CountOf(answer.findings, section.cause); count > 0)
        {
            host::Print("\n" + std::string(section.title) + ": " + Grouped(count) + "\n\n");
            gone += PrintSection(answer.findings, section.cause, tell);
        }
    }
    return gone;
}

} // namespace replay
