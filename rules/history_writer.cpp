#include "rules/history_writer.h"

#include <string>

namespace rules
{

HistoryWriter::HistoryWriter(const char* connexionString)
{
    m_database.OpenEx(connexionString, CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
}

void HistoryWriter::WriteDecisions(const HistoryFacts& facts, const TArray<ruleSign>& decisions,
                                   std::uint32_t& written)
{
    for (int i = 0; i < decisions.GetCount(); ++i)
    {
        FindingOf(facts, *decisions.GetAt(i), m_finding);
        Write(facts, m_finding, written);
    }
}

void HistoryWriter::WriteNoRule(const HistoryFacts& facts, const TSimpleStringW& motif,
                                std::uint32_t& written)
{
    Write(facts, FindingOfNoRule(motif), written);
}

void HistoryWriter::Write(const HistoryFacts& facts, const HistoryFinding& finding,
                          std::uint32_t& written)
{
    RequireWithinLiterals(facts, finding);
    std::wstring& statement = m_database.NewStatementText();
    AppendHistoryRow(statement, facts, finding);
    m_database.ExecuteSQLW(statement.c_str());
    ++written;
}

} // namespace rules
