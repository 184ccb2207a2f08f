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
        const ruleSign& decision = *decisions.GetAt(i);
        RequireWithinLiterals(facts, decision);
        m_database.ExecuteSQLW(DecisionRow(facts, decision).SafeGetString());
        ++written;
    }
}

void HistoryWriter::WriteNoRule(const HistoryFacts& facts, const TSimpleStringW& motif,
                                std::uint32_t& written)
{
    RequireWithinLiterals(facts, motif);
    m_database.ExecuteSQLW(NoRuleRow(facts, motif).SafeGetString());
    ++written;
}

} // namespace rules
