#include "host/explain/explanation.h"

#include "database/cdatabase.h"
#include "host/file_text.h"
#include "host/rulebook/book_reading.h"
#include "port/files.h"
#include "port/kernel.h"
#include "support/codepage.h"
#include "support/temporary_file.h"

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

} // namespace

Explanation Explain(scratch::Copy& copy, const authority::RemedyTask& task,
                    const std::string& trace)
{
    Explanation explanation;
    if (auto checks = ReadTrace(trace); !checks.empty())
    {
        explanation.check = std::move(checks.back());
    }
    if (explanation.check.verdict && *explanation.check.verdict != scratch::kAccepted)
    {
        explanation.remedies = authority::FindRemedies(copy, task);
        explanation.provenance = copy.Provenance();
    }
    return explanation;
}

std::vector<Section> Sections(const Explanation& explanation)
{
    const Language language = support::MessageLanguage();
    std::vector<Section> sections = Sections(explanation.check, language);
    if (explanation.remedies)
    {
        sections.push_back(SectionOf(*explanation.remedies, language));
    }
    return sections;
}

nlohmann::ordered_json AsJson(const Explanation& explanation)
{
    nlohmann::ordered_json object = AsJson(explanation.check);
    object["acceptedIf"] = nullptr;
    if (explanation.remedies)
    {
        object["acceptedIf"] = AsJson(*explanation.remedies);
    }
    return object;
}

TraceKeeper::TraceKeeper(host::CheckRequest& request)
    : m_path(request.traceFile), m_isOwn(request.traceFile.empty()), m_before(0)
{
    if (m_isOwn)
    {
        m_path = support::TemporaryPath(nullptr, "trace");
        request.traceFile = m_path;
    }
    else
    {
        m_before = port::FileSize(m_path.c_str());
    }
}

TraceKeeper::~TraceKeeper()
{
    if (m_isOwn)
    {
        DeleteFileA(m_path.c_str());
    }
}

std::string TraceKeeper::Text() const
{
    return host::FileText(m_path, m_before).value_or(std::string());
}

Explanation ExplainCheck(CDatabase& database, const host::CheckRequest& request,
                         const std::optional<authority::Amounts>& amounts, const std::string& trace)
{
    const scratch::OrderKind kind = KindOf(request);
    if (!amounts)
    {
        Explanation explanation;
        if (auto checks = ReadTrace(trace); !checks.empty())
        {
            explanation.check = std::move(checks.back());
        }
        return explanation;
    }
    const rulebook::RuleBook book =
        rulebook::ReadBook(database, request.connection, {std::nullopt, kind.contract});
    scratch::Copy copy(database, request.connection, book);
    return Explain(copy,
                   {book,
                    kind,
                    {request.signerNames, amounts->total, amounts->largest, request.isDistributed}},
                   trace);
}

} // namespace explain
