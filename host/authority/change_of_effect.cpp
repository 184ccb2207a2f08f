#include "host/authority/change_of_effect.h"

#include "host/authority/contract_maps.h"
#include "host/authority/map_text.h"
#include "host/refusal.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace authority
{

namespace
{

using rulebook::Contract;
using rulebook::ContractKey;
using rulebook::Holder;
using rulebook::RuleBook;

constexpr unsigned int kVerdicts = 3; // 0, 1 and 2

void AddKeysOf(std::vector<ContractKey>& keys, const Contract* contract)
{
    if (contract != nullptr)
    {
        AddKeys(keys, *contract);
    }
}

std::set<std::string> CertificateNames(const Holder& holder)
{
    std::set<std::string> names;
    for (const auto& certificate : holder.certificates)
    {
        names.insert(certificate.commonName);
    }
    return names;
}

// A last name, a serial number or a date decides nothing. A first name does: whom it was given to
// counts as taken.
bool MayDecide(const rulebook::ItemChange<Holder>& change)
{
    return change.before == nullptr || change.after == nullptr ||
           change.before->opposition != change.after->opposition ||
           change.before->firstName != change.after->firstName ||
           CertificateNames(*change.before) != CertificateNames(*change.after);
}

bool Names(const Contract& contract, const std::set<std::string>& huids)
{
    return std::any_of(contract.rules.begin(), contract.rules.end(),
                       [&huids](const rulebook::Rule& rule) {
                           return huids.count(rule.huid1.value_or("")) > 0 ||
                                  huids.count(rule.huid2.value_or("")) > 0;
                       });
}

/// The keys whose orders the change may reach.
std::vector<ContractKey> KeysReached(const RuleBook& before, const RuleBook& after,
                                     const rulebook::BookChange& change)
{
    std::vector<ContractKey> keys;
    for (const auto& contract : change.contracts)
    {
        AddKeysOf(keys, contract.before);
        AddKeysOf(keys, contract.after);
    }
    std::set<std::string> huids;
    for (const auto& holder : change.holders)
    {
        if (MayDecide(holder))
        {
            huids.insert(holder.before != nullptr ? holder.before->huid : holder.after->huid);
        }
    }
    for (const RuleBook* const book : {&before, &after})
    {
        for (const Contract& contract : book->contracts)
        {
            if (Names(contract, huids))
            {
                AddKeys(keys, contract);
            }
        }
    }
    return keys;
}

/// What a check for the key may meet: its contracts and the holders whom their rules name.
RuleBook PartOf(const RuleBook& book, const ContractKey& key)
{
    RuleBook part;
    std::set<std::string> named;
    for (const Contract& contract : book.contracts)
    {
        std::vector<ContractKey> keys;
        AddKeys(keys, contract);
        if (std::find(keys.begin(), keys.end(), key) == keys.end())
        {
            continue;
        }
        part.contracts.push_back(contract);
        for (const auto& rule : contract.rules)
        {
            named.insert(rule.huid1.value_or(""));
            named.insert(rule.huid2.value_or(""));
        }
    }
    for (const Holder& holder : book.holders)
    {
        if (named.count(holder.huid) > 0)
        {
            part.holders.push_back(holder);
        }
    }
    return part;
}

void AddWith(std::vector<Holder>& holders, const Holder& holder, const std::string& suffix,
             const std::set<std::string>& names, bool isAmongNames)
{
    Holder part = holder;
    part.huid += suffix;
    std::erase_if(part.certificates, [&](const auto& certificate)
                  { return (names.count(certificate.commonName) > 0) != isAmongNames; });
    if (!part.certificates.empty())
    {
        holders.push_back(std::move(part));
    }
}

/// Both books in one, for whom and for which amounts the rules of either tell apart. A holder whose
/// certificates change is one for those that stay, those that go and those that come.
RuleBook Joint(const RuleBook& before, const RuleBook& after)
{
    RuleBook joint;
    joint.contracts = before.contracts;
    joint.contracts.insert(joint.contracts.end(), after.contracts.begin(), after.contracts.end());
    std::map<std::string, const Holder*> former;
    for (const Holder& holder : before.holders)
    {
        former.emplace(holder.huid, &holder);
    }
    for (const Holder& holder : after.holders)
    {
        const auto found = former.find(holder.huid);
        const Holder* const was = found == former.end() ? nullptr : found->second;
        if (was == nullptr || CertificateNames(*was) == CertificateNames(holder))
        {
            joint.holders.push_back(holder);
        }
        else
        {
            AddWith(joint.holders, holder, "", CertificateNames(*was), true);
            AddWith(joint.holders, holder, ", new certificate", CertificateNames(*was), false);
            AddWith(joint.holders, *was, ", former certificate", CertificateNames(holder), false);
        }
        former.erase(holder.huid);
    }
    for (const auto& [huid, holder] : former)
    {
        joint.holders.push_back(*holder);
    }
    return joint;
}

/// The order types of a key; the last may stand for every type without terms.
struct Types
{
    std::set<std::int64_t> used;
    std::optional<std::int64_t> other;
};

Types TypesOf(const RuleBook& joint, const ContractKey& key)
{
    Types types;
    std::set<std::int64_t> taken;
    bool hasEntry = false;
    for (const Contract& contract : joint.contracts)
    {
        for (const auto& terms : contract.terms)
        {
            taken.insert(terms.type);
            if (terms.key == key)
            {
                types.used.insert(terms.type);
            }
        }
        hasEntry = hasEntry || (contract.entry && contract.entry->key == key);
    }
    std::int64_t unused = 0;
    while (taken.count(unused) > 0)
    {
        ++unused;
    }
    if (hasEntry)
    {
        types.other = unused;
    }
    return types;
}

Line Both(const Line& before, const Line& after)
{
    Line both;
    for (std::size_t cell = 0; cell < before.size(); ++cell)
    {
        both.push_back({before[cell].number * kVerdicts + after[cell].number, ""});
    }
    return both;
}

bool IsOtherwise(const Verdict& both)
{
    return both.number / kVerdicts != both.number % kVerdicts;
}

bool IsOtherwise(const Row& row)
{
    return std::any_of(row.direct.begin(), row.direct.end(),
                       [](const Verdict& both) { return IsOtherwise(both); }) ||
           std::any_of(row.distributed.begin(), row.distributed.end(),
                       [](const Verdict& both) { return IsOtherwise(both); });
}

const Row* Find(const AuthorityMap& map, const Row& wanted)
{
    const auto found =
        std::find_if(map.rows.begin(), map.rows.end(),
                     [&wanted](const Row& row) { return row.parties == wanted.parties; });
    return found == map.rows.end() ? nullptr : &*found;
}

/// The rows of both maps that are decided otherwise, each verdict standing for the two. A row that
/// only one map needed is judged for the other.
AuthorityMap Compared(scratch::Judge& judgeBefore, const AuthorityMap& before,
                      scratch::Judge& judgeAfter, const AuthorityMap& after)
{
    AuthorityMap both = before;
    both.pairsDecide = before.pairsDecide && after.pairsDecide;
    both.rows.clear();
    const auto add = [&both](Row row, const Line& direct, const Line& distributed)
    {
        row.direct = direct;
        row.distributed = distributed;
        if (IsOtherwise(row))
        {
            both.rows.push_back(std::move(row));
        }
    };
    for (const Row& row : before.rows)
    {
        const Row* const other = Find(after, row);
        const auto line = [&](Line Row::*which, bool isDistributed)
        {
            return other != nullptr
                       ? other->*which
                       : JudgeLine(judgeAfter, row.signers, isDistributed, before.cells);
        };
        add(row, Both(row.direct, line(&Row::direct, false)),
            Both(row.distributed, line(&Row::distributed, true)));
    }
    for (const Row& row : after.rows)
    {
        if (Find(before, row) == nullptr)
        {
            const auto line = [&](bool isDistributed)
            { return JudgeLine(judgeBefore, row.signers, isDistributed, before.cells); };
            add(row, Both(line(false), row.direct), Both(line(true), row.distributed));
        }
    }
    return both;
}

void AddRedecisions(const AuthorityMap& both, const Row& row, const Line& line, const char* veu,
                    std::vector<Redecision>& redecisions)
{
    for (std::size_t cell = 0; cell < line.size(); ++cell)
    {
        if (IsOtherwise(line[cell]))
        {
            redecisions.push_back({row.label, veu, both.cells[cell], line[cell].number / kVerdicts,
                                   line[cell].number % kVerdicts});
        }
    }
}

std::vector<Redecision> RedecisionsOf(const AuthorityMap& both)
{
    std::vector<Redecision> redecisions;
    for (const Row& row : both.rows)
    {
        if (row.direct == row.distributed)
        {
            AddRedecisions(both, row, row.direct, "any", redecisions);
            continue;
        }
        AddRedecisions(both, row, row.direct, "off", redecisions);
        AddRedecisions(both, row, row.distributed, "on", redecisions);
    }
    return redecisions;
}

/// One key before and after.
class KeyComparer
{
public:
    KeyComparer(CDatabase& database, const host::Connection& connection, const RuleBook& before,
                const RuleBook& after, const ContractKey& key)
        : m_key(key), m_before(PartOf(before, key)), m_after(PartOf(after, key)),
          m_joint(Joint(m_before, m_after)), m_copyBefore(database, connection, m_before),
          m_copyAfter(database, connection, m_after)
    {
    }

    void AddTo(ChangeOfEffect& effect)
    {
        const Types types = TypesOf(m_joint, m_key);
        for (const std::int64_t type : types.used)
        {
            AddKind({m_key, type}, false, effect);
        }
        if (types.other)
        {
            AddKind({m_key, *types.other}, true, effect);
        }
    }

private:
    void AddKind(const scratch::OrderKind& kind, bool isOtherTypes, ChangeOfEffect& effect)
    {
        std::optional<scratch::Judge> judgeBefore;
        std::optional<scratch::Judge> judgeAfter;
        try
        {
            judgeBefore.emplace(m_copyBefore, kind);
            judgeAfter.emplace(m_copyAfter, kind);
        }
        catch (const host::Refusal&)
        {
            return; // no check can name it, so nothing is decided there
        }
        AuthorityMap both = Compared(*judgeBefore, MakeMap(*judgeBefore, m_joint, kind),
                                     *judgeAfter, MakeMap(*judgeAfter, m_joint, kind));
        both.isOtherTypes = isOtherTypes;
        effect.judged += judgeBefore->Count() + judgeAfter->Count();
        if (!both.rows.empty())
        {
            both = WithoutEqualNeighbours(std::move(both));
            auto redecisions = RedecisionsOf(both);
            effect.kinds.push_back({std::move(both), std::move(redecisions)});
        }
    }

    ContractKey m_key;
    RuleBook m_before;
    RuleBook m_after;
    RuleBook m_joint;
    scratch::Copy m_copyBefore;
    scratch::Copy m_copyAfter;
};

} // namespace

ChangeOfEffect EffectOf(CDatabase& database, const host::Connection& connection,
                        const RuleBook& before, const rulebook::BookChange& change,
                        std::size_t mostKeys)
{
    ChangeOfEffect effect;
    const RuleBook after = rulebook::Changed(before, change);
    const std::vector<ContractKey> keys = KeysReached(before, after, change);
    effect.keysJudged = std::min(keys.size(), mostKeys);
    effect.keysLeft = keys.size() - effect.keysJudged;
    for (std::size_t index = 0; index < effect.keysJudged; ++index)
    {
        KeyComparer(database, connection, before, after, keys[index]).AddTo(effect);
    }
    return effect;
}

} // namespace authority
