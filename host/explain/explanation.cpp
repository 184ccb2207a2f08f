#include "host/explain/explanation.h"

#include "database/cdatabase.h"
#include "host/explain/obstacle.h"
#include "host/file_text.h"
#include "host/refusal.h"
#include "host/rulebook/book_reading.h"
#include "host/text.h"
#include "port/files.h"
#include "support/codepage.h"

#include <nlohmann/json.hpp>

namespace explain
{

namespace
{

using support::Language;

scratch::OrderKind KindOf(const host::CheckRequest& request)
{
    return {{support::Utf8FromNarrow(request.partner), support::Utf8FromNarrow(request.service),
             support::Utf8FromNarrow(request.client), request.protocol,
             request.isRequester ? 0 : 1},
            request.contractType};
}

Explanation OfTrace(const std::string& trace)
{
    Explanation explanation;
    if (auto checks = ReadTrace(trace); !checks.empty())
    {
        explanation.check = std::move(checks.back());
    }
    return explanation;
}

bool WasNotAccepted(const Explanation& explanation)
{
    return explanation.check.verdict && *explanation.check.verdict != scratch::kAccepted;
}

bool IsOpen(const Explanation& explanation)
{
    return explanation.check.verdict && explanation.check.isDistributed;
}

void LookFurther(Explanation& explanation, scratch::Copy& copy, const authority::RemedyTask& task)
{
    if (WasNotAccepted(explanation))
    {
        auto& found = explanation.remedies.emplace();
        explanation.obstacle = ObstacleTo([&] { authority::FindRemedies(copy, task, found); });
    }
    if (IsOpen(explanation) && explanation.obstacle.empty())
    {
        explanation.outlook = OutlookOf(copy, task);
    }
}

// There is no copy to look on.
void GiveUp(Explanation& explanation, const std::string& obstacle)
{
    if (WasNotAccepted(explanation))
    {
        explanation.remedies.emplace();
        explanation.obstacle = obstacle;
    }
    else
    {
        explanation.outlook = {std::nullopt, obstacle};
    }
}

} // namespace

Explanation Explain(scratch::Copy& copy, const authority::RemedyTask& task,
                    const std::string& trace)
{
    Explanation explanation = OfTrace(trace);
    LookFurther(explanation, copy, task);
    return explanation;
}

std::vector<Section> Sections(const Explanation& explanation)
{
    const Language language = support::MessageLanguage();
    std::vector<Section> sections = Sections(explanation.check, language);
    if (explanation.remedies)
    {
        sections.push_back(SectionOf(*explanation.remedies, explanation.obstacle, language));
    }
    if (explanation.outlook)
    {
        const auto told = SectionsOf(*explanation.outlook, language);
        sections.insert(sections.end(), told.begin(), told.end());
    }
    return sections;
}

nlohmann::ordered_json AsJson(const Explanation& explanation)
{
    nlohmann::ordered_json object = AsJson(explanation.check);
    object["acceptedIf"] = nullptr;
    // An empty list says that nothing would do.
    if (explanation.remedies && (explanation.obstacle.empty() || !explanation.remedies->empty()))
    {
        object["acceptedIf"] = AsJson(*explanation.remedies);
    }
    if (!explanation.obstacle.empty())
    {
        object["acceptedIfObstacle"] = explanation.obstacle;
    }
    AddTo(object, explanation.outlook);
    return object;
}

TraceKeeper::TraceKeeper(host::CheckRequest& request) : m_path(request.traceFile)
{
    if (!m_path.empty())
    {
        m_before = port::FileSize(m_path.c_str());
        return;
    }
    m_path = m_own.emplace().Path();
    request.traceFile = m_path;
}

std::string TraceKeeper::Text() const
{
    if (m_path.empty())
    {
        throw host::Refusal(host::kCouldNotRun, scratch::OwnTrace::Failure());
    }
    std::string text = host::FileText(m_path, m_before).value_or(std::string());
    if (text.empty())
    {
        throw host::Refusal(host::kCouldNotRun,
                            "nothing of it can be read from the trace " +
                                host::Quoted(support::Utf8FromNarrow(m_path)) +
                                ". Give a file that can be written and read with --trace.");
    }
    return text;
}

Explanation ExplainCheck(CDatabase& database, const host::CheckRequest& request,
                         const std::optional<authority::Amounts>& amounts, const std::string& trace)
{
    Explanation explanation = OfTrace(trace);
    if (!amounts || !(WasNotAccepted(explanation) || IsOpen(explanation)))
    {
        return explanation;
    }
    const std::string obstacle = ObstacleTo(
        [&]
        {
            const scratch::OrderKind kind = KindOf(request);
            const rulebook::RuleBook book =
                rulebook::ReadBook(database, request.connection, {std::nullopt, kind.contract});
            scratch::Copy copy(database, request.connection, book);
            LookFurther(
                explanation, copy,
                {book,
                 kind,
                 {request.signerNames, amounts->total, amounts->largest, request.isDistributed}});
        });
    if (!obstacle.empty())
    {
        GiveUp(explanation, obstacle);
    }
    return explanation;
}

} // namespace explain
