#include "host/batch/teller.h"

#include "host/batch/result_csv.h"
#include "host/decision.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/sentence.h"
#include "host/text.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace batch
{

namespace
{

using Json = nlohmann::ordered_json;

// What a line leaves out of what a check tells: the journal is not read back for it, and a document
// is no line.
constexpr const char* kLeftOut[] = {"findings", "event", "database", "report"};

double Milliseconds(double seconds)
{
    return std::round(seconds * 1000.0) / 1000.0;
}

// At once, for whoever reads along. What cannot be told ends the run: else orders would be judged
// that nobody hears of.
void PrintNow(const std::string& text)
{
    host::Print(text);
    if (!host::FlushOutput())
    {
        throw host::Refusal(host::kCouldNotRun,
                            "standard output cannot be written, so the run ends here: the orders "
                            "that are left are judged by the next one. What was judged is in the "
                            "history (signcheck history).");
    }
}

void PrintLine(const Json& object)
{
    PrintNow(object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
}

std::string Word(const OrderResult& result)
{
    if (!result.IsJudged())
    {
        return "NOT JUDGED";
    }
    switch (host::ExitStatusOf(result.check))
    {
    case host::kDone:
        return "ACCEPTED";
    case host::kFindings:
        return "REFUSED";
    case host::kNoRule:
        return "NO RULE";
    default:
        return "UNKNOWN";
    }
}

std::string Reason(const OrderResult& result)
{
    if (!result.IsJudged())
    {
        return result.error;
    }
    const host::CheckResult& check = result.check;
    // The reason that the library gives then is about the rules, which were satisfied.
    if (host::ExitStatusOf(check) == host::kAmountsUnknown)
    {
        return "accepted on amounts that are not known" + host::BecauseOf(check.amounts.problem);
    }
    const std::string code = check.reasonCode.empty() ? std::string() : check.reasonCode + ": ";
    return code + (check.reasonText.empty() ? check.problem : check.reasonText);
}

} // namespace

Json ResultAsJson(const OrderResult& result)
{
    Json object;
    if (result.request && result.IsJudged())
    {
        object = host::CheckAsJson(*result.request, result.check);
        for (const char* const field : kLeftOut)
        {
            object.erase(field);
        }
    }
    else
    {
        object = {{"file", host::Printable(result.path)},
                  {"verdict", nullptr},
                  {"outcome", "not-run"},
                  {"error", host::WithoutPasswords(result.error)}};
    }
    object["held"] = result.ending == Ending::Held;
    object["recovered"] = result.ending == Ending::Recovered;
    object["seconds"] = Milliseconds(result.seconds);
    object["status"] = result.status;
    return object;
}

std::string ResultInWords(const OrderResult& result)
{
    constexpr std::size_t kWordWidth = 12;
    const std::string word = Word(result);
    const std::string gap(kWordWidth - word.size(), ' ');
    const std::string reason = host::Printable(Reason(result));
    return host::ColouredVerdict(word) + gap + host::Printable(result.path) +
           (reason.empty() ? "" : ": " + reason);
}

Teller::Teller(host::OutputFormat format, std::size_t total, Time start)
    : m_format(format), m_hasTotal(format == host::OutputFormat::Table && total > 0), m_bar(total),
      m_start(start)
{
    if (m_format == host::OutputFormat::Csv)
    {
        PrintNow(ResultNamesAsCsv());
    }
}

void Teller::Tell(const OrderResult& result)
{
    m_tally.Add(result);
    switch (m_format)
    {
    case host::OutputFormat::Json:
    case host::OutputFormat::NdJson:
        PrintLine(ResultAsJson(result));
        return;
    case host::OutputFormat::Csv:
        PrintNow(ResultAsCsv(result));
        return;
    case host::OutputFormat::Table:
        TellInWords(result);
    }
}

void Teller::TellInWords(const OrderResult& result)
{
    // In a run that nobody knows the end of every order is told.
    if (result.status != host::kDone || !m_hasTotal)
    {
        m_bar.Clear();
        PrintNow(host::WithoutPasswords(ResultInWords(result)) + "\n");
    }
    for (const std::string& warning : result.check.warnings)
    {
        m_bar.Clear();
        host::Warn(host::Printable(result.path) + ": " + warning);
    }
    if (m_hasTotal)
    {
        m_bar.Show(m_tally);
    }
}

void Teller::Sum()
{
    m_bar.Clear();
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    switch (m_format)
    {
    case host::OutputFormat::Json:
    case host::OutputFormat::NdJson:
        PrintLine({{"summary", m_tally.AsJson(Milliseconds(seconds))}});
        return;
    case host::OutputFormat::Csv: // a file of rows has no place for it
        host::Complain(m_tally.InWords(seconds));
        return;
    case host::OutputFormat::Table:
        host::Print(m_tally.InWords(seconds) + "\n");
    }
}

} // namespace batch
