#include "rules/contract_lookup.h"

#include "database/crecordset.h"
#include "rules/numbered_section.h"
#include "rules/statements.h"
#include "signutils/amount_units.h"
#include "support/checked_copy.h"
#include "support/numbers.h"
#include "support/trace.h"

#include <cstddef>
#include <iterator>

namespace rules
{

namespace
{

void TraceOnly(cuidRule&, const char*) {}

// A blocked contract carries a number other than 0.
void StoreActive(cuidRule& rule, const char* text)
{
    rule.active = support::ToInt32(text) == 0 ? 1 : 0;
}

void StoreAmount(cuidRule& rule, const char* text)
{
    std::uint16_t decimals = kUnknownDecimals;
    rule.amount = UnitsToAmount(AmountTextToUnits(text, decimals));
}

template <std::int32_t cuidRule::*Member>
void StoreNumber(cuidRule& rule, const char* text)
{
    rule.*Member = support::ToInt32(text);
}

void StoreContract(cuidRule& rule, const char* text)
{
    support::TruncatingCopy(rule.cuid, sizeof rule.cuid, text);
}

template <holderSlot cuidRule::*Holder>
void StoreHolder(cuidRule& rule, const char* text)
{
    char(&huid)[256] = (rule.*Holder).huid;
    support::TruncatingCopy(huid, sizeof huid, text);
}

/// One column: its name, its label in the trace, and where its value goes.
struct RuleColumn
{
    const char* name;
    const char* label;
    void (*store)(cuidRule& rule, const char* text);
};

// In the order of reading, which is the order in the trace.
constexpr RuleColumn kRuleLine[] = {
    {"CUID", "CUID Rules     ", StoreContract},
    {"VPNAME", "CUID Partner   ", TraceOnly},
    {"PROTOCOL", "CUID Protocol  ", TraceOnly},
    {"VFNAME", "CUID Service   ", TraceOnly},
    {"VCNAME", "CUID Client    ", TraceOnly},
    {"SERVER", "CUID SERVER    ", TraceOnly},
    {"OPPOSITION", "CUID OPPOSITION", StoreActive},
    {"ALLHOLDERS", "CUID ALLHOLDERS", StoreNumber<&cuidRule::allHolders>},
    {"PROFILE", "CUID PROFILE   ", StoreNumber<&cuidRule::profile>},
    {"ALONE", "CUID ALONE     ", StoreNumber<&cuidRule::alone>},
    {"AMOUNT", "CUID AMOUNT    ", StoreAmount},
    {"TLEVEL", "CUID TLEVEL    ", StoreNumber<&cuidRule::tlevel>},
    {"HUID1", "HUID Signer 1  ", StoreHolder<&cuidRule::holder1>},
    {"HUID2", "HUID Signer 2  ", StoreHolder<&cuidRule::holder2>},
};

constexpr RuleColumn kContractLine[] = {
    {"CUID", "CUID Rules     ", StoreContract},
    {"VPNAME", "CUID Partner   ", TraceOnly},
    {"PTC", "CUID Protocol  ", TraceOnly},
    {"VFNAME", "CUID Service   ", TraceOnly},
    {"VCNAME", "CUID Client    ", TraceOnly},
    {"SERVER", "CUID SERVER    ", TraceOnly},
    {"OPPOSITION", "CUID OPPOSITION", StoreActive},
    {"ALLHOLDERS", "CUID ALLHOLDERS", StoreNumber<&cuidRule::allHolders>},
};

/// A query with the row that it gives and what is read of it.
struct RuleSource
{
    TSimpleStringW statement;
    const database::RowLayout& layout;
    const RuleColumn* columns;
    std::size_t columnCount;
};

cuidRule ReadRule(const CRecordset& rows, void* trace, const RuleSource& source)
{
    cuidRule rule{};
    CTString value;
    for (std::size_t i = 0; i < source.columnCount; ++i)
    {
        const RuleColumn& column = source.columns[i];
        rows.GetFieldValue(column.name, value);
        TraceValue(trace, column.label, value.SafeGetString(), 1);
        column.store(rule, value.SafeGetString());
    }
    return rule;
}

// The rows are numbered in the trace on from `rules`, so over both queries.
void ReadRules(CRecordset& rows, void* trace, const RuleSource& source, TArray<cuidRule>& rules)
{
    rows.OpenW(CRecordset::kForwardOnly, source.statement.SafeGetString(), 0, &source.layout);
    for (; !rows.IsEOF(); rows.MoveNext())
    {
        TraceNumberedSection(trace, "CONTRACTS RULE #%d", rules.GetCount());
        rules.Add(ReadRule(rows, trace, source));
    }
    rows.Close();
}

} // namespace

void LoadRules(CDatabase& database, void* trace, const ContractKey& contract,
               TArray<cuidRule>& rules)
{
    RequireWithinLiterals(contract);
    CRecordset rows(database);
    ReadRules(rows, trace, {RuleQuery(contract), kRuleRow, kRuleLine, std::size(kRuleLine)}, rules);
    if (rules.GetCount() == 0)
    {
        ReadRules(rows, trace,
                  {ContractQuery(contract), kContractRow, kContractLine, std::size(kContractLine)},
                  rules);
    }
}

} // namespace rules
