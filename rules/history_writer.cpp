#include "rules/history_writer.h"

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
        Write(facts, FindingOf(facts, *decisions.GetAt(i)), written);
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
    m_database.ExecuteSQLW(HistoryRow(facts, finding).SafeGetString());
    ++written;
}

} // namespace rules
