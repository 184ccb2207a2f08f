#include "rules/statements.h"

#include "database/literal.h"
#include "rules/row_columns.h"
#include "support/append_text.h"

#include <cstddef>
#include <iterator>

namespace rules
{

namespace
{

// Numbers of 32 bits print as %d prints them, so the largest is -1.
std::int32_t AsSigned(std::uint32_t number)
{
    return static_cast<std::int32_t>(number);
}

std::int32_t ServerFlag(const ContractKey& contract)
{
    return contract.serverMode ? 1 : 0;
}

void PutDoubled(TSimpleStringW& target, const TSimpleStringW& text)
{
    target = text;
    target.ReplaceAll(L"'", L"''");
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

void FindingOf(const HistoryFacts& facts, const ruleSign& decision, HistoryFinding& finding)
{
    finding.status = facts.verdict;
    finding.controlType = decision.controlType;
    PutDoubled(finding.firstName1, decision.signer1.firstName);
    PutDoubled(finding.lastName1, decision.signer1.lastName);
    PutDoubled(finding.firstName2, decision.signer2.firstName);
    PutDoubled(finding.lastName2, decision.signer2.lastName);
    finding.motif = decision.reasonText;
    finding.motif += L" : ";
    finding.motif += decision.message;
    finding.motif.ReplaceAll(L"'", L"''");
}

HistoryFinding FindingOfNoRule(const TSimpleStringW& motif)
{
    HistoryFinding finding;
    PutDoubled(finding.motif, motif);
    return finding;
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
void AppendHistoryRow(std::wstring& statement, const HistoryFacts& facts,
                      const HistoryFinding& finding)
{
    const ContractKey& contract = facts.contract;
    const OrderFacts& order = facts.order;
    const auto text = [&](const auto& words) { support::AppendWords(statement, words); };
    const auto cut = [&](const auto* value, std::size_t characters)
    { support::AppendCut(statement, value, characters); };
    const auto number = [&](auto value) { support::AppendDecimal(statement, value); };
    const auto name = [&](const TSimpleStringW& value) { cut(value.SafeGetString(), 255); };

    text(L"INSERT INTO HST_SIGNRULES (DATETIME,SERVER,STATUT,VPNAME,TYPE_PTC,VFNAME,VCNAME,"
         L"IDFICVFS,ORDERID,TYPE_CTRL,SIGNER1,SIGNER2,MOTIF,CNS,TOTAL,MAXORDER,FILENAME) "
         L"VALUES ({fn NOW()},");
    number(ServerFlag(contract));
    text(L",'");
    number(finding.status);
    text(L"','");
    cut(contract.partner, 8);
    text(L"',");
    number(contract.protocol);
    text(L",'");
    cut(contract.service, 8);
    text(L"','");
    cut(contract.client, 8);
    text(L"',");
    number(order.idFileVfs);
    text(L",'");
    cut(order.orderId, 10);
    text(L"',");
    number(finding.controlType);
    text(L",N'");
    name(finding.firstName1);
    text(L" ");
    name(finding.lastName1);
    text(L"',N'");
    name(finding.firstName2);
    text(L" ");
    name(finding.lastName2);
    text(L"',N'");
    cut(finding.motif.SafeGetString(), 1024);
    text(L"',N'");
    cut(facts.signerList, 2048);
    text(L"',");
    support::AppendSixPlaces(statement, order.totalAmount);
    text(L",");
    support::AppendSixPlaces(statement, order.maxOrderAmount);
    text(L",'");
    cut(order.fileName, 256);
    text(L"')");
}

} // namespace rules
