#include "rules/contract_lookup.h"

#include "database/crecordset.h"
#include "rules/numbered_section.h"
#include "rules/row_columns.h"
#include "rules/statements.h"
#include "signutils/amount_units.h"
#include "support/checked_copy.h"
#include "support/numbers.h"
#include "support/trace.h"

#include <cstddef>
#include <span>
#include <string_view>

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

/// One column: where it stands in its row, its label in the trace, and where its value goes.
struct RuleColumn
{
    std::size_t position;
    const char* label;
    void (*store)(cuidRule& rule, const char* text);
};

consteval std::size_t InRule(std::string_view name)
{
    return database::PositionOf(kRuleColumns, name);
}

consteval std::size_t InContract(std::string_view name)
{
    return database::PositionOf(kContractColumns, name);
}

// In the order of reading, which is the order in the trace.
constexpr RuleColumn kRuleLine[] = {
    {InRule("CUID"), "CUID Rules     ", StoreContract},
    {InRule("VPNAME"), "CUID Partner   ", TraceOnly},
    {InRule("PROTOCOL"), "CUID Protocol  ", TraceOnly},
    {InRule("VFNAME"), "CUID Service   ", TraceOnly},
    {InRule("VCNAME"), "CUID Client    ", TraceOnly},
    {InRule("SERVER"), "CUID SERVER    ", TraceOnly},
    {InRule("OPPOSITION"), "CUID OPPOSITION", StoreActive},
    {InRule("ALLHOLDERS"), "CUID ALLHOLDERS", StoreNumber<&cuidRule::allHolders>},
    {InRule("PROFILE"), "CUID PROFILE   ", StoreNumber<&cuidRule::profile>},
    {InRule("ALONE"), "CUID ALONE     ", StoreNumber<&cuidRule::alone>},
    {InRule("AMOUNT"), "CUID AMOUNT    ", StoreAmount},
    {InRule("TLEVEL"), "CUID TLEVEL    ", StoreNumber<&cuidRule::tlevel>},
    {InRule("HUID1"), "HUID Signer 1  ", StoreHolder<&cuidRule::holder1>},
    {InRule("HUID2"), "HUID Signer 2  ", StoreHolder<&cuidRule::holder2>},
};

constexpr RuleColumn kContractLine[] = {
    {InContract("CUID"), "CUID Rules     ", StoreContract},
    {InContract("VPNAME"), "CUID Partner   ", TraceOnly},
    {InContract("PTC"), "CUID Protocol  ", TraceOnly},
    {InContract("VFNAME"), "CUID Service   ", TraceOnly},
    {InContract("VCNAME"), "CUID Client    ", TraceOnly},
    {InContract("SERVER"), "CUID SERVER    ", TraceOnly},
    {InContract("OPPOSITION"), "CUID OPPOSITION", StoreActive},
    {InContract("ALLHOLDERS"), "CUID ALLHOLDERS", StoreNumber<&cuidRule::allHolders>},
};

/// A query with the row that it gives and what is read of it.
struct RuleSource
{
    TSimpleStringW statement;
    const database::RowLayout& layout;
    std::span<const RuleColumn> columns;
};

void ReadRule(CRecordset& rows, void* trace, const RuleSource& source, cuidRule& rule)
{
    rule = cuidRule();
    for (const RuleColumn& column : source.columns)
    {
        const char* const value = rows.NarrowText(column.position);
        TraceValue(trace, column.label, value, 1);
        column.store(rule, value);
    }
}

// The rows are numbered in the trace on from `rules`, so over both queries.
void ReadRules(CRecordset& rows, void* trace, const RuleSource& source, TArray<cuidRule>& rules)
{
    rows.OpenW(CRecordset::kForwardOnly, source.statement.SafeGetString(), 0, &source.layout);
    for (; !rows.IsEOF(); rows.MoveNext())
    {
        TraceNumberedSection(trace, "CONTRACTS RULE #%d", rules.GetCount());
        rules.AddFilled([&](cuidRule& rule) { ReadRule(rows, trace, source, rule); });
    }
    rows.Close();
}

} // namespace

void LoadRules(CDatabase& database, void* trace, const ContractKey& contract,
               TArray<cuidRule>& rules)
{
    RequireWithinLiterals(contract);
    CRecordset rows(database);
    ReadRules(rows, trace, {RuleQuery(contract), kRuleRow, kRuleLine}, rules);
    if (rules.GetCount() == 0)
    {
        ReadRules(rows, trace, {ContractQuery(contract), kContractRow, kContractLine}, rules);
    }
}

} // namespace rules
