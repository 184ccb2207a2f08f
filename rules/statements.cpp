#include "rules/statements.h"

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

// Names in the form of the statement: quotes doubled.
struct QuotedSigner
{
    explicit QuotedSigner(const signerInfo& signer)
        : firstName(QuotesDoubled(signer.firstName)), lastName(QuotesDoubled(signer.lastName))
    {
    }

    TSimpleStringW firstName;
    TSimpleStringW lastName;
};

// Quotes are doubled before the texts are cut to their columns. A cut between the two halves of a
// doubled quote therefore breaks the statement and the row is lost; verdict and journal stay.
// The signer list and the narrow texts are inserted as they stand, with the same effect for a
// quote in them.
TSimpleStringW HistoryRow(const HistoryFacts& facts, std::uint32_t status, std::int32_t controlType,
                          const QuotedSigner& signer1, const QuotedSigner& signer2,
                          const TSimpleStringW& motif)
{
    const ContractKey& contract = facts.contract;
    const OrderFacts& order = facts.order;
    TSimpleStringW statement;
    statement.GenerateString(
        L"INSERT INTO HST_SIGNRULES (DATETIME,SERVER,STATUT,VPNAME,TYPE_PTC,VFNAME,VCNAME,"
        L"IDFICVFS,ORDERID,TYPE_CTRL,SIGNER1,SIGNER2,MOTIF,CNS,TOTAL,MAXORDER,FILENAME) "
        L"VALUES ({fn NOW()},%d,'%lu','%.8S',%lu,'%.8S','%.8S',%lu,'%.10S',%d,"
        L"N'%.255s %.255s',N'%.255s %.255s',N'%.1024s',N'%.2048s',%f,%f,'%.256S')",
        ServerFlag(contract), status, contract.partner, contract.protocol, contract.service,
        contract.client, order.idFileVfs, order.orderId, controlType, signer1.firstName,
        signer1.lastName, signer2.firstName, signer2.lastName, motif, facts.signerList,
        order.totalAmount, order.maxOrderAmount, order.fileName);
    return statement;
}

} // namespace

const database::RowLayout kRuleRow = {kRuleColumns, std::size(kRuleColumns)};
const database::RowLayout kContractRow = {kContractColumns, std::size(kContractColumns)};

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

TSimpleStringW DecisionRow(const HistoryFacts& facts, const ruleSign& decision)
{
    TSimpleStringW motif;
    motif.GenerateString(L"%s : %s", QuotesDoubled(decision.reasonText),
                         QuotesDoubled(decision.message));
    return HistoryRow(facts, facts.verdict, decision.controlType, QuotedSigner(decision.signer1),
                      QuotedSigner(decision.signer2), motif);
}

TSimpleStringW NoRuleRow(const HistoryFacts& facts, const TSimpleStringW& motif)
{
    const QuotedSigner nobody{signerInfo()};
    return HistoryRow(facts, kVerdictNoRule, 0, nobody, nobody, QuotesDoubled(motif));
}

} // namespace rules
