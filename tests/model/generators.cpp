#include "tests/model/generators.h"

#include "tests/model/names.h"
#include "tests/model/plain_amounts.h"
#include "tests/model/plain_texts.h"

#include <cmath>
#include <limits>

namespace model
{

namespace
{

/// A holder before it is given its identifier.
struct Person
{
    HolderRow row;
    std::vector<Text> certificates;
};

/// A contract with its rules, and the session that asks for it.
struct Plan
{
    CurrentRow contract;
    std::vector<RuleRow> rules;
    bool onlyContract = false; ///< a row of SSR_CONTRACT alone
    bool twice = false;        ///< the contract stands twice, so that its rules count twice
    Session session;
};

constexpr int kMostHolders = 5;

/// The third crosses no narrow text whole; the fourth is what is left of it. The fifth would end
/// its literal.
const Text kHolderIds[kMostHolders] = {L"H1", L"H2", L"\u0416H3", L"?H3", L"H'5"};

rc::Gen<Person> AnyPerson()
{
    return rc::gen::exec(
        []
        {
            Person person;
            person.row.firstName = *AnyPersonName();
            person.row.lastName = *AnyPersonName();
            person.row.opposition = *AnyOpposition();
            const int count = OneOf<int>({{70, 1}, {20, 2}, {5, 3}, {5, 0}});
            person.certificates = *rc::gen::container<std::vector<Text>>(
                static_cast<std::size_t>(count), AnyCertificateName());
            return person;
        });
}

int AnyHolder()
{
    return OneOf<int>({{40, 0}, {40, 1}, {10, 2}, {10, 3}, {2, 4}});
}

NullableText AnyHolderId(int holder)
{
    if (Chance(4))
    {
        return OneOf<NullableText>({{1, std::nullopt}, {1, Text()}, {1, L"nobody"}});
    }
    return kHolderIds[holder];
}

struct PlannedRule
{
    RuleRow row;
    int one = 0;
    int two = 0;
};

rc::Gen<PlannedRule> AnyRule()
{
    return rc::gen::exec(
        []
        {
            PlannedRule rule;
            rule.one = AnyHolder();
            rule.two = Chance(75) ? (rule.one + 1) % 2 : AnyHolder();
            rule.row.huid1 = AnyHolderId(rule.one);
            rule.row.huid2 = AnyHolderId(rule.two);
            rule.row.alone = OneOf<NullableNumber>({{60, 0}, {30, 1}, {5, std::nullopt}, {5, -1}});
            rule.row.amount = *AnyAmountText();
            rule.row.tlevel = OneOf<NullableNumber>(
                {{50, 0}, {40, 1}, {4, 2}, {3, std::nullopt}, {2, -1}, {2, 3000000000}});
            return rule;
        });
}

Text SignedBy(const std::vector<Person>& people, int holder)
{
    const auto index = static_cast<std::size_t>(holder);
    if (index < people.size() && !people[index].certificates.empty() && Chance(85))
    {
        return people[index]
            .certificates[*rc::gen::inRange<std::size_t>(0, people[index].certificates.size())];
    }
    return *AnyCertificateName();
}

/// The list as a host writes it, with blanks and empty names now and then.
Text SignerList(const std::vector<Person>& people, const std::vector<PlannedRule>& rules)
{
    const int count = OneOf<int>({{4, 0}, {36, 1}, {36, 2}, {14, 3}, {6, 4}, {4, 5}});
    const PlannedRule* const rule =
        rules.empty() ? nullptr : &rules[*rc::gen::inRange<std::size_t>(0, rules.size())];
    Text list;
    bool second = Chance(15);
    for (int index = 0; index < count; ++index)
    {
        const bool ofRule = rule != nullptr && Chance(85);
        const Text name =
            ofRule ? SignedBy(people, second ? rule->two : rule->one) : *AnyCertificateName();
        second = !second;
        list += OneOf<Text>({{90, L""}, {5, L" "}, {2, L"\t"}, {3, L" ;;"}}) + InAnyCase(name) +
                OneOf<Text>({{90, index + 1 < count ? L";" : L""}, {10, L" \r\n;"}});
    }
    // Names beyond what the history keeps of the list; the second cut parts two apostrophes.
    switch (OneOf<int>({{98, 0}, {1, 1}, {1, 2}}))
    {
    case 1:
        return list + L";" + Text(2100, L' ') + L";EVA LUND";
    case 2:
        return list + L";" + Text(2046 - std::min<std::size_t>(list.size(), 2000), L' ') + L"''X";
    default:
        return list;
    }
}

double AnyAmount(const std::vector<PlannedRule>& rules)
{
    if (rules.empty() || Chance(6))
    {
        return OneOf<double>({{3, 0.0},
                              {3, 1000.0},
                              {2, -1.0},
                              {2, 1e15},
                              {1, 0.0000001},
                              {1, -0.0000001},
                              {1, 1e300},
                              {1, std::numeric_limits<double>::infinity()},
                              {1, -std::numeric_limits<double>::infinity()},
                              {1, std::numeric_limits<double>::quiet_NaN()}});
    }
    const double limit = LimitOf(rules[*rc::gen::inRange<std::size_t>(0, rules.size())].row.amount);
    const double most = std::numeric_limits<double>::max();
    return OneOf<double>({{20, limit},
                          {10, limit + 0.000001},
                          {10, limit - 0.000001},
                          {5, limit + 0.0000001},
                          {5, limit - 0.0000001},
                          {5, std::nextafter(limit, most)},
                          {5, std::nextafter(limit, -most)},
                          {10, limit + 0.01},
                          {10, limit - 0.01},
                          {20, limit / 2},
                          {10, limit * 2}});
}

Text AnyName()
{
    return *AnyContractName();
}

void FillContract(Plan& plan)
{
    CurrentRow& contract = plan.contract;
    Session& session = plan.session;
    session.partner = AnyName();
    session.service = OneOf<Text>({{90, L"XCT"}, {1, L"O'"}, {3, L"\u20AC"}});
    session.client = OneOf<Text>({{90, L"CLI01"}, {1, L"'"}, {3, L"''"}});
    session.serverMode = OneOf<int>({{70, 1}, {20, 0}, {5, 2}, {5, -1}});
    session.contractType =
        OneOf<std::uint64_t>({{80, 1}, {5, 0}, {5, 4294967295U}, {5, 4294967297U}});
    session.protocol = OneOf<std::uint64_t>({{70, 9}, {10, 1}, {5, 99}, {5, 4294967295U}});

    // The row that the session's statement finds, but for a few.
    const auto stored = [](const Text& name) { return LiteralValue(name).value_or(name); };
    contract.key.partner = stored(session.partner);
    contract.key.service = stored(session.service);
    contract.key.client = stored(session.client);
    contract.key.protocol = static_cast<std::int32_t>(session.protocol);
    contract.key.server = session.serverMode != 0 ? 1 : 0;
    contract.type = static_cast<std::int32_t>(session.contractType);
    switch (OneOf<int>({{94, 0}, {1, 1}, {1, 2}, {1, 3}, {1, 4}}))
    {
    case 1:
        ++contract.type;
        break;
    case 2:
        ++contract.key.protocol;
        break;
    case 3:
        contract.key.server = 1 - contract.key.server;
        break;
    case 4:
        contract.key.client += L"x";
        break;
    default:
        break;
    }
    contract.profile =
        OneOf<NullableNumber>({{25, 0}, {60, 1}, {10, 2}, {2, -1}, {3, std::nullopt}});
    contract.allHolders = OneOf<NullableNumber>({{88, 0}, {8, 1}, {1, -1}, {3, std::nullopt}});
    contract.opposition = OneOf<NullableText>(
        {{90, L"0"}, {3, L"1"}, {2, L" 2x"}, {2, std::nullopt}, {2, L""}, {2, L"x"}});
    plan.onlyContract = Chance(6);
    plan.twice = Chance(2);
}

void FillSession(Session& session)
{
    session.connected = !Chance(3);
    session.traced = Chance(20);
    session.amountsFromFile = Chance(3);
    session.currency = OneOf<Text>({{80, L"EUR"}, {10, L""}, {10, L"\u20AC"}});
    session.psrService = OneOf<Text>({{60, L""}, {30, L"STATUS"}, {4, L"\u00C9T"}, {10, L".."}});
    session.veu = Chance(35);
    session.idFileVfs = OneOf<std::uint64_t>({{80, 42}, {10, 4294967295U}, {5, 4294967296U}});
    session.initiatingParty = OneOf<Text>({{80, L"BANKFRPP"}, {10, L""}, {10, L"\u00C9<&>"}});
    session.orderId = *AnyOrderId();
    session.messageName = OneOf<Text>({{90, L"pain.001.001.03"}, {10, L""}});
    session.messageId = OneOf<Text>({{90, L"RPT-1"}, {10, L"R\u00C9F"}});
    session.refRequest = OneOf<Text>({{60, L""}, {30, L"REF-1"}, {10, L"l'\u00E9t\u00E9"}});
    session.logFile = OneOf<Text>({{70, L""}, {20, L"/log/host.log"}, {10, L"/log/\u00E9'.log"}});
}

/// Of a call of the rules alone, or what changes on a session that was used before.
void ChangeSettings(Call& call, const std::vector<PlannedRule>& rules, bool isFirst)
{
    if (call.rulesAlone || (!isFirst && Chance(40)))
    {
        call.amounts = GivenAmounts{AnyAmount(rules), AnyAmount(rules),
                                    OneOf<Text>({{8, L"EUR"}, {1, L""}, {1, L"\u20AC"}})};
    }
    call.distributedFromNow = !isFirst && Chance(15);
}

Call AnyCall(const std::vector<Person>& people, const std::vector<PlannedRule>& rules, bool isFirst)
{
    Call call;
    call.signers = SignerList(people, rules);
    call.fileName = *AnyFileName();
    call.rulesAlone = Chance(15);
    call.onCopy = Chance(4);
    call.reasonCodeBefore = OneOf<Text>({{1, L""}, {1, L"KEPT"}});
    call.reasonTextBefore = OneOf<Text>({{1, L""}, {1, L"kept \u0416"}});
    ChangeSettings(call, rules, isFirst);
    return call;
}

rc::Gen<Plan> AnyPlan(const std::vector<Person>& people)
{
    return rc::gen::exec(
        [people]
        {
            Plan plan;
            FillContract(plan);
            FillSession(plan.session);
            const int ruleCount = OneOf<int>({{60, 1}, {25, 2}, {10, 3}, {3, 0}});
            const auto rules = *rc::gen::container<std::vector<PlannedRule>>(
                static_cast<std::size_t>(ruleCount), AnyRule());
            for (const PlannedRule& rule : rules)
            {
                plan.rules.push_back(rule.row);
            }
            plan.session.total = AnyAmount(rules);
            plan.session.largest = AnyAmount(rules);
            const int calls = OneOf<int>({{90, 1}, {8, 2}, {2, 3}});
            for (int index = 0; index < calls; ++index)
            {
                plan.session.calls.push_back(AnyCall(people, rules, index == 0));
            }
            return plan;
        });
}

/// A list that is reduced by taking plans away, which one of a fixed length is not.
rc::Gen<std::vector<Plan>> SomePlans(const std::vector<Person>& people)
{
    return rc::gen::nonEmpty(rc::gen::resize(
        kMostSessions,
        rc::gen::container<std::vector<Plan>>(rc::gen::resize(rc::kNominalSize, AnyPlan(people)))));
}

void AddPeople(Tables& tables, const std::vector<Person>& people)
{
    for (std::size_t index = 0; index < people.size(); ++index)
    {
        HolderRow row = people[index].row;
        row.huid = kHolderIds[index];
        tables.holders.push_back(row);
        for (const Text& certificate : people[index].certificates)
        {
            tables.certificates.push_back({row.huid, certificate});
        }
    }
}

void AddContract(Tables& tables, const Plan& plan, const Text& cuid)
{
    tables.contracts.push_back(
        {cuid, plan.contract.key, plan.contract.allHolders, plan.contract.opposition});
    if (plan.onlyContract)
    {
        return;
    }
    CurrentRow row = plan.contract;
    row.cuid = std::nullopt; // awaits its identifier
    tables.current.push_back(row);
    row.cuid = cuid;
    tables.current.insert(tables.current.end(), plan.twice ? 2 : 1, row);
    for (RuleRow rule : plan.rules)
    {
        rule.cuid = cuid;
        tables.rules.push_back(rule);
    }
}

} // namespace

rc::Gen<World> AnyWorld()
{
    // Numbers in a range would grow with the run; these are as large at its beginning.
    return rc::gen::resize(
        rc::kNominalSize,
        rc::gen::exec(
            []
            {
                World world;
                world.journalMissing = Chance(4);
                auto people = *rc::gen::container<std::vector<Person>>(kMostHolders, AnyPerson());
                if (Chance(8))
                {
                    // A signer found without a first name can be found again.
                    people[0].row.firstName = OneOf<NullableText>({{1, Text()}, {1, std::nullopt}});
                    people[1].certificates.clear();
                    for (const Text& certificate : people[0].certificates)
                    {
                        people[1].certificates.push_back(InAnyCase(certificate));
                    }
                }
                const auto plans = *SomePlans(people);
                AddPeople(world.tables, people);
                for (std::size_t index = 0; index < plans.size(); ++index)
                {
                    AddContract(world.tables, plans[index], L"C" + std::to_wstring(index));
                    world.sessions.push_back(plans[index].session);
                }
                return world;
            }));
}

} // namespace model
