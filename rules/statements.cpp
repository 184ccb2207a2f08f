#include "rules/statements.h"

#include "database/literal.h"

#include <cstddef>
#include <iterator>

namespace rules
{

namespace
{

using database::ColumnKind;

constexpr std::size_t kNumberLength = 11;
constexpr std::size_t kOppositionLength = 20;

constexpr database::ColumnLayout kRuleColumns[] = {
    {"CUID", ColumnKind::Narrow, 64},
    {"VPNAME", ColumnKind::Narrow, 8},
    {"PROTOCOL", ColumnKind::Narrow, kNumberLength},
    {"SERVER", ColumnKind::Narrow, kNumberLength},
    {"VFNAME", ColumnKind::Narrow, 8},
    {"VCNAME", ColumnKind::Narrow, 8},
    {"TYPE", ColumnKind::Narrow, kNumberLength},
    {"PROFILE", ColumnKind::Narrow, kNumberLength},
    {"ALLHOLDERS", ColumnKind::Narrow, kNumberLength},
    {"OPPOSITION", ColumnKind::Narrow, kOppositionLength},
    {"HUID1", ColumnKind::Narrow, 64},
    {"HUID2", ColumnKind::Narrow, 64},
    {"ALONE", ColumnKind::Narrow, kNumberLength},
    {"AMOUNT", ColumnKind::Narrow, 32},
    {"TLEVEL", ColumnKind::Narrow, kNumberLength},
};

constexpr database::ColumnLayout kContractColumns[] = {
    {"CUID", ColumnKind::Narrow, 64},
    {"VPNAME", ColumnKind::Narrow, 8},
    {"PTC", ColumnKind::Narrow, kNumberLength},
    {"VFNAME", ColumnKind::Narrow, 8},
    {"VCNAME", ColumnKind::Narrow, 8},
    {"ALLHOLDERS", ColumnKind::Narrow, kNumberLength},
    {"OPPOSITION", ColumnKind::Narrow, kOppositionLength},
    {"SERVER", ColumnKind::Narrow, kNumberLength},
};

// Numbers of 32 bits print as %d prints them, so the largest is -1.
std::int32_t AsSigned(std::uint32_t number)
{
    return static_cast<std::int32_t>(number);
}

std::int32_t ServerFlag(const ContractKey& contract)
{
    return contract.serverMode ? 1 : 0;
}

TSimpleStringW QuotesDoubled(TSimpleStringW text)
{
    text.ReplaceAll(L"'", L"''");
    return text;
}

// The lengths below are those to which the statements cut.

void RequireParties(const ContractKey& contract, const char* operation)
{
    database::RequireWithinLiteral(contract.partner, 8, "partner", operation);
    database::RequireWithinLiteral(contract.service, 8, "service", operation);
    database::RequireWithinLiteral(contract.client, 8, "client", operation);
}

} // namespace

const database::RowLayout kRuleRow = {kRuleColumns, std::size(kRuleColumns)};
const database::RowLayout kContractRow = {kContractColumns, std::size(kContractColumns)};

void RequireWithinLiterals(const ContractKey& contract)
{
    RequireParties(contract, "OpenW");
}

TSimpleStringW RuleQuery(const ContractKey& contract)
{
    TSimpleStringW statement;
    statement.GenerateString(
        L"SELECT C.CUID, VPNAME, PROTOCOL, SERVER, VFNAME, VCNAME, TYPE, C.PROFILE, C.ALLHOLDERS, "
        L"C.OPPOSITION, R.HUID1, R.HUID2, R.ALONE, R.AMOUNT, R.TLEVEL "
        L"FROM SSR_CONTRACTCUR C, SSR_CONTRACTRULE R "
        L"WHERE TYPE=%d AND C.CUID IS NOT NULL AND C.CUID = R.CUID AND C.VPNAME='%.8S' "
        L"AND C.VFNAME='%.8S' AND C.VCNAME='%.8S' AND C.PROTOCOL=%d AND SERVER=%d",
        AsSigned(contract.contractType), contract.partner, contract.service, contract.client,
        AsSigned(contract.protocol), ServerFlag(contract));
    return statement;
}

TSimpleStringW ContractQuery(const ContractKey& contract)
{
    TSimpleStringW statement;
    statement.GenerateString(
        L"SELECT CUID, VPNAME, PTC, VFNAME, VCNAME, ALLHOLDERS, OPPOSITION, SERVER "
        L"FROM SSR_CONTRACT "
        L"WHERE VPNAME='%.8S' AND VFNAME='%.8S' AND VCNAME='%.8S' AND PTC=%d AND SERVER=%d",
        contract.partner, contract.service, contract.client, AsSigned(contract.protocol),
        ServerFlag(contract));
    return statement;
}

HistoryFinding FindingOf(const HistoryFacts& facts, const ruleSign& decision)
{
    TSimpleStringW motif;
    motif.GenerateString(L"%s : %s", QuotesDoubled(decision.reasonText),
                         QuotesDoubled(decision.message));
    return {facts.verdict,
            decision.controlType,
            QuotesDoubled(decision.signer1.firstName),
            QuotesDoubled(decision.signer1.lastName),
            QuotesDoubled(decision.signer2.firstName),
            QuotesDoubled(decision.signer2.lastName),
            motif};
}

HistoryFinding FindingOfNoRule(const TSimpleStringW& motif)
{
    return {kVerdictNoRule, 0, {}, {}, {}, {}, QuotesDoubled(motif)};
}

void RequireWithinLiterals(const HistoryFacts& facts, const HistoryFinding& finding)
{
    constexpr char kOperation[] = "ExecuteSQLW";
    RequireParties(facts.contract, kOperation);
    const auto require = [&](const auto* text, std::size_t cut, const char* what)
    { database::RequireWithinLiteral(text, cut, what, kOperation); };
    require(facts.order.orderId, 10, "order identifier");
    require(finding.firstName1.SafeGetString(), 255, "first name of signer 1");
    require(finding.lastName1.SafeGetString(), 255, "last name of signer 1");
    require(finding.firstName2.SafeGetString(), 255, "first name of signer 2");
    require(finding.lastName2.SafeGetString(), 255, "last name of signer 2");
    require(finding.motif.SafeGetString(), 1024, "finding");
    require(facts.signerList, 2048, "signer list");
    require(facts.order.fileName, 256, "file name");
}

// Quotes are doubled before the texts are cut to their columns. A cut between the two halves of a
// doubled quote therefore loses the row; verdict and journal stay. The signer list and the narrow
// texts are inserted as they stand, with the same effect for a quote in them.
TSimpleStringW HistoryRow(const HistoryFacts& facts, const HistoryFinding& finding)
{
    const ContractKey& contract = facts.contract;
    const OrderFacts& order = facts.order;
    TSimpleStringW statement;
    statement.GenerateString(
        L"INSERT INTO HST_SIGNRULES (DATETIME,SERVER,STATUT,VPNAME,TYPE_PTC,VFNAME,VCNAME,"
        L"IDFICVFS,ORDERID,TYPE_CTRL,SIGNER1,SIGNER2,MOTIF,CNS,TOTAL,MAXORDER,FILENAME) "
        L"VALUES ({fn NOW()},%d,'%lu','%.8S',%lu,'%.8S','%.8S',%lu,'%.10S',%d,"
        L"N'%.255s %.255s',N'%.255s %.255s',N'%.1024s',N'%.2048s',%f,%f,'%.256S')",
        ServerFlag(contract), finding.status, contract.partner, contract.protocol, contract.service,
        contract.client, order.idFileVfs, order.orderId, finding.controlType, finding.firstName1,
        finding.lastName1, finding.firstName2, finding.lastName2, finding.motif, facts.signerList,
        order.totalAmount, order.maxOrderAmount, order.fileName);
    return statement;
}

} // namespace rules
