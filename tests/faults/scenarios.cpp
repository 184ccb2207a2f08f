#include "tests/faults/scenarios.h"

#include <optional>
#include <ostream>
#include <utility>

namespace faults
{

namespace
{

using model::NullableText;
using model::Text;

constexpr wchar_t kCuid[] = L"C1";

/// A world with these holders, one contract without rules, and a session whose only signer is Ana.
class Builder
{
public:
    explicit Builder(std::string name)
    {
        m_scenario.name = std::move(name);
        Hold(L"H1", L"Ana", L"Ruiz", L"0", {L"Ana Ruiz"});
        Hold(L"H2", L"Bo", L"Dahl", L"0", {L"Bo Dahl"});
        Hold(L"H3", L"Cy", L"Poe", L"1", {L"Cy Poe"});
        Hold(L"H4", L"Dee", L"Fox", L"0", {L"Dee One", L"Dee Two"});
        Hold(L"H5", L"Eve", L"Gil", L"0", {L"Ana Ruiz"});
        model::Session session;
        session.partner = L"PARTNER1";
        session.service = L"SERVICE1";
        session.client = L"CLIENT1";
        session.total = 100.0;
        session.largest = 60.0;
        session.currency = L"EUR";
        session.idFileVfs = 7;
        session.initiatingParty = L"BANKFRPP";
        session.orderId = L"ORDER0001";
        session.messageName = L"pain.001.001.03";
        session.messageId = L"MSG-1";
        // A session keeps its signers, so the second check needs none.
        session.calls.resize(2);
        session.calls[0].fileName = L"order.xml";
        session.calls[0].signers = L"Ana Ruiz";
        session.calls[1].fileName = L"order.xml";
        m_scenario.world.sessions.push_back(session);
    }

    Builder& Contract(int profile = 0, int allHolders = 0, const Text& opposition = L"0")
    {
        m_scenario.world.tables.current.push_back(
            {kCuid, Key(), 1, profile, allHolders, opposition});
        return *this;
    }
    Builder& ContractAlone(int allHolders, const Text& opposition = L"0")
    {
        auto& contracts = m_scenario.world.tables.contracts;
        contracts.push_back({Text(contracts.size() + 1, L'C'), Key(), allHolders, opposition});
        return *this;
    }
    Builder& Rule(const NullableText& one, const NullableText& two, int alone = 0,
                  const Text& amount = L"1000.00", int tlevel = 0)
    {
        m_scenario.world.tables.rules.push_back({kCuid, one, two, alone, amount, tlevel});
        return *this;
    }
    Builder& Alone(const Text& holder, const Text& amount = L"1000.00", int tlevel = 0)
    {
        return Rule(holder, std::nullopt, 1, amount, tlevel);
    }
    Builder& SignedBy(const Text& signers)
    {
        Session().calls[0].signers = signers;
        return *this;
    }
    Builder& Veu()
    {
        Session().veu = true;
        return *this;
    }
    Builder& Report(const Text& service = L"STATUS")
    {
        Session().psrService = service;
        return *this;
    }
    Builder& Traced()
    {
        Session().traced = true;
        return *this;
    }
    Builder& Requester()
    {
        Session().serverMode = 0;
        m_scenario.world.tables.current.back().key.server = 0;
        return *this;
    }
    Builder& Referenced()
    {
        Session().refRequest = L"REF-1";
        Session().logFile = L"host.log";
        return *this;
    }
    Builder& AmountsFromFile()
    {
        Session().amountsFromFile = true;
        return *this;
    }
    Builder& RulesAlone()
    {
        for (model::Call& call : Session().calls)
        {
            call.rulesAlone = true;
            call.reasonCodeBefore = L"KEEP";
            call.reasonTextBefore = L"kept";
        }
        return *this;
    }
    Builder& OnCopy()
    {
        Session().calls[0].onCopy = true;
        Session().calls[1].signers = Session().calls[0].signers;
        return *this;
    }
    Builder& JournalMissing()
    {
        m_scenario.world.journalMissing = true;
        return *this;
    }
    Builder& EventWaits()
    {
        m_scenario.eventWaits = true;
        return *this;
    }
    Builder& RowByRow()
    {
        m_scenario.rowByRow = true;
        return *this;
    }
    Builder& In(Pool pool)
    {
        m_scenario.pool = pool;
        return *this;
    }
    Builder& Hold(const Text& huid, const NullableText& first, const NullableText& last,
                  const Text& opposition, const std::vector<Text>& certificates)
    {
        m_scenario.world.tables.holders.push_back({huid, first, last, opposition});
        for (const Text& each : certificates)
        {
            m_scenario.world.tables.certificates.push_back({huid, each});
        }
        return *this;
    }

    operator Scenario() const { return m_scenario; } // NOLINT(google-explicit-constructor)

private:
    model::Session& Session() { return m_scenario.world.sessions[0]; }
    static model::ContractKey Key() { return {L"PARTNER1", L"SERVICE1", L"CLIENT1", 9, 1}; }

    Scenario m_scenario;
};

std::vector<Scenario> Acceptances()
{
    return {
        Builder("AloneUnderTheTotal").Contract().Alone(L"H1"),
        Builder("AloneUnderTheLargestOrder").Contract().Alone(L"H1", L"60.00", 1),
        Builder("UnknownLevelIsNotLimited").Contract().Alone(L"H1", L"1.00", 2),
        Builder("TwoHolders").Contract(1).Rule(L"H1", L"H2").SignedBy(L"Ana Ruiz;Bo Dahl"),
        Builder("TwoHoldersByOrder")
            .Contract(1)
            .Rule(L"H1", L"H2", 0, L"60.00", 1)
            .SignedBy(L"Bo Dahl; Ana Ruiz ;"),
        Builder("FirstOfTwoSoFar").Contract(1).Rule(L"H1", L"H2").Veu(),
        Builder("SecondOfTwoSoFar").Contract(1).Rule(L"H2", L"H1").Veu(),
        Builder("SecondOfTwoSoFarByOrder").Contract(1).Rule(L"H2", L"H1", 0, L"60.00", 1).Veu(),
        Builder("HolderWithTwoCertificates").Contract().Alone(L"H4").SignedBy(L"Dee Two"),
        Builder("BothCertificatesOfOneHolder")
            .Contract(2)
            .Alone(L"H4")
            .SignedBy(L"Dee One;Dee Two")
            .Veu(),
        Builder("MoreSignersThanARowHolds")
            .Contract(1)
            .Rule(L"H1", L"H2")
            .SignedBy(L"Ana Ruiz;Bo Dahl;Dee One"),
        Builder("LaterRuleMatches").Contract().Alone(L"H2").Alone(L"H4").Alone(L"H1"),
        Builder("SeveralRulesMatch").Contract().Alone(L"H1").Alone(L"H1", L"500.00").Alone(L"H1"),
        Builder("RequesterSide").Contract().Alone(L"H1").Requester(),
        Builder("ReferenceAndLog").Contract().Alone(L"H1").Referenced(),
        Builder("LongNamesAreReadAgain")
            .Hold(L"H6", Text(700, L'f'), Text(9000, L'l'), L"0", {L"Long"})
            .Contract()
            .Alone(L"H6")
            .SignedBy(L"Long"),
    };
}

std::vector<Scenario> AllHolders()
{
    return {
        Builder("AnyHolder").Contract(0, 1).Rule(L"H1", L"H2"),
        Builder("AnyTwoHolders").Contract(0, 1).Rule(L"H1", L"H2").SignedBy(L"Bo Dahl;Cy Poe"),
        Builder("AnyThreeHolders")
            .Contract(0, 1)
            .Rule(L"H1", L"H2")
            .SignedBy(L"Bo Dahl;Dee One;Cy Poe"),
        Builder("AnyHolderAndAStranger")
            .Contract(0, 1)
            .Rule(L"H1", L"H2")
            .SignedBy(L"Nobody;Bo Dahl"),
        Builder("AnyHolderWithoutSigners").Contract(0, 1).Rule(L"H1", L"H2").SignedBy(L""),
        Builder("ContractAloneAllowsAnyHolder").ContractAlone(1),
        Builder("TwoContractsAlone").ContractAlone(1).ContractAlone(0),
    };
}

std::vector<Scenario> Refusals()
{
    return {
        Builder("TotalAboveOneHolder").Contract().Alone(L"H1", L"99.99"),
        Builder("TotalAboveTwoHolders")
            .Contract(1)
            .Rule(L"H1", L"H2", 0, L"99.99")
            .SignedBy(L"Ana Ruiz;Bo Dahl"),
        Builder("TotalAboveSecondHolder").Contract(1).Rule(L"H2", L"H1", 0, L"99.99").Veu(),
        Builder("OrderAboveOneHolder").Contract().Alone(L"H1", L"59.99", 1),
        Builder("OrderAboveTwoHolders")
            .Contract(1)
            .Rule(L"H1", L"H2", 0, L"59.99", 1)
            .SignedBy(L"Ana Ruiz;Bo Dahl"),
        Builder("FirstHolderInOpposition").Contract().Alone(L"H3").SignedBy(L"Cy Poe"),
        Builder("SecondHolderInOpposition")
            .Contract(1)
            .Rule(L"H1", L"H3")
            .SignedBy(L"Ana Ruiz;Cy Poe"),
        Builder("OnlyTheSecondIsThereAndInOpposition")
            .Contract(1)
            .Rule(L"H1", L"H3")
            .SignedBy(L"Cy Poe"),
        Builder("SameCertificateOfTwoHolders")
            .Hold(L"H6", std::nullopt, L"Nameless", L"0", {L"Shared"})
            .Hold(L"H7", std::nullopt, L"Other", L"0", {L"Shared"})
            .Contract(1)
            .Rule(L"H6", L"H7")
            .SignedBy(L"Shared"),
        Builder("OneSignatureForAProfileOfTwo").Contract(1).Rule(L"H1", L"H2"),
        Builder("TwoSignaturesForAProfileOfOne")
            .Contract(0)
            .Rule(L"H1", L"H2")
            .SignedBy(L"Ana Ruiz;Bo Dahl"),
        Builder("FirstRuleAcceptsSecondRefuses").Contract().Alone(L"H1").Alone(L"H1", L"50.00"),
        Builder("FirstRuleRefusesSecondAccepts").Contract().Alone(L"H1", L"50.00").Alone(L"H1"),
    };
}

std::vector<Scenario> NoRules()
{
    return {
        Builder("Stranger").Contract().Alone(L"H1").SignedBy(L"Nobody"),
        Builder("NoSigner").Contract().Alone(L"H1").SignedBy(L" ; "),
        Builder("NoContract"),
        Builder("ContractAloneNamesNobody").ContractAlone(0),
        Builder("ContractAloneIsNotActive").ContractAlone(1, L"1"),
        Builder("ContractIsNotActive").Contract(0, 0, L"1").Alone(L"H1"),
        Builder("TwoSignersWhereOneSignsAlone")
            .Contract()
            .Alone(L"H1")
            .SignedBy(L"Ana Ruiz;Bo Dahl"),
        Builder("SecondHolderIsMissing")
            .Contract(1)
            .Rule(L"H1", L"H2")
            .SignedBy(L"Ana Ruiz;Nobody"),
        Builder("CertificateServesOneHolder")
            .Contract(1)
            .Rule(L"H1", L"H5")
            .SignedBy(L"Ana Ruiz;Nobody"),
    };
}

std::vector<Scenario> Records()
{
    const auto refused = [](const char* name)
    { return Builder(name).Contract().Alone(L"H1", L"99.99"); };
    return {
        refused("RefusedWithReport").Report(),
        refused("RefusedWithReportAndReference").Report().Referenced(),
        refused("ReportThatCannotBeFiled").Report(L".."),
        refused("AmountsUnknownWithReport").Report().AmountsFromFile(),
        refused("RulesAloneRefused").RulesAlone(),
        Builder("RulesAloneAccepted").Contract().Alone(L"H1").RulesAlone(),
        refused("OnACopy").OnCopy().Report(),
        refused("Traced").Alone(L"H1").Traced(),
        Builder("JournalMissing").Contract().Alone(L"H1").JournalMissing(),
        refused("JournalMissingWithReport").Report().JournalMissing(),
        Builder("EventWaits").Contract().Alone(L"H1").EventWaits(),
        refused("EventWaitsWithReport").Report().EventWaits(),
        Builder("RowByRow").Contract().Alone(L"H2").Alone(L"H1").Alone(L"H1").RowByRow(),
        Builder("PoolEmpty").Contract().Alone(L"H1").In(Pool::Empty),
        Builder("PoolWarm").Contract().Alone(L"H1").In(Pool::Warm),
        refused("PoolWarmWithReport").Report().In(Pool::Warm),
        Builder("PoolWarmTwoRules").Contract().Alone(L"H1").Alone(L"H1").In(Pool::Warm),
    };
}

} // namespace

void PrintTo(const Scenario& scenario, std::ostream* stream)
{
    *stream << scenario.name;
}

const std::vector<Scenario>& AllScenarios()
{
    static const std::vector<Scenario> all = []
    {
        std::vector<Scenario> scenarios;
        for (const auto& part : {Acceptances(), AllHolders(), Refusals(), NoRules(), Records()})
        {
            scenarios.insert(scenarios.end(), part.begin(), part.end());
        }
        return scenarios;
    }();
    return all;
}

} // namespace faults
