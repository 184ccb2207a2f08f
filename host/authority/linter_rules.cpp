#include "host/authority/linter.h"

#include <algorithm>

namespace authority
{

namespace
{

constexpr const char* kLimitReason = "AM02";

} // namespace

std::string Linter::NameToSignWith(const std::string& huid) const
{
    for (const Party& party : m_map.parties)
    {
        if (std::find(party.huids.begin(), party.huids.end(), huid) != party.huids.end())
        {
            return party.names.front();
        }
    }
    return m_map.parties.back().names.front();
}

bool Linter::CanSignAtAll(const std::string& huid) const
{
    return std::any_of(
        m_map.parties.begin(), m_map.parties.end(),
        [&huid](const Party& party)
        { return std::find(party.huids.begin(), party.huids.end(), huid) != party.huids.end(); });
}

std::vector<std::string> Linter::Named(const rulebook::Rule& rule)
{
    std::vector<std::string> huids;
    for (const auto& huid : {rule.huid1, rule.huid2})
    {
        if (huid && !huid->empty())
        {
            huids.push_back(*huid);
        }
    }
    return huids;
}

bool Linter::AllowsAnyone(const RuleLines& rule)
{
    return rule.direct.front().front().number == scratch::kAccepted; // the row of nobody
}

void Linter::LintRuleAlone(const RuleLines& rule)
{
    m_copy.Replace(BookOfOneRule(m_task.book, m_task.kind, rule.cuid, rule.number));
    LintNeverDecides(rule);
    if (AllowsAnyone(rule))
    {
        return;
    }
    LintNoLimit(rule);
    LintPairByOne(rule);
    LintNoCertificate(rule);
}

void Linter::LintNeverDecides(const RuleLines& rule)
{
    const auto decides = Find(
        [&rule](const Spot& spot)
        { return rule.Of(spot.row, spot.isDistributed)[spot.cell].number != scratch::kNoRule; });
    if (decides)
    {
        return;
    }
    scratch::Order order;
    for (const std::string& huid : Named(rule.rule))
    {
        order.signers.push_back(NameToSignWith(huid));
    }
    Add("never-decides",
        rule.Name() + " never decides anything, whoever signs and whatever the amounts.",
        {Ask(order, rule.Name() + " alone")});
}

void Linter::LintNoLimit(const RuleLines& rule)
{
    const std::size_t last = m_map.cells.size() - 1;
    const auto spot = Find(
        [&](const Spot& each)
        {
            return each.cell == last &&
                   rule.Of(each.row, each.isDistributed)[last].number == scratch::kAccepted;
        });
    if (spot)
    {
        Add("no-limit", rule.Name() + " accepts any amount.",
            {Ask(OrderAt(*spot), rule.Name() + " alone")});
    }
}

bool Linter::IsOneHolder(const Row& row) const
{
    const auto& parties = row.parties;
    return parties.size() == 1 ||
           (parties.size() == 2 && m_map.parties[parties[0]].huids.size() == 1 &&
            m_map.parties[parties[0]].huids == m_map.parties[parties[1]].huids);
}

void Linter::LintPairByOne(const RuleLines& rule)
{
    if (Named(rule.rule).size() != 2 || rule.rule.alone.value_or(0) != 0)
    {
        return;
    }
    const auto spot = Find(
        [&](const Spot& each)
        {
            return !each.isDistributed && IsOneHolder(m_map.rows[each.row]) &&
                   rule.Of(each.row, false)[each.cell].number == scratch::kAccepted;
        });
    if (spot)
    {
        Add("pair-by-one",
            rule.Name() + " names two holders, but " + m_map.rows[spot->row].label +
                " passes it without the other.",
            {Ask(OrderAt(*spot), rule.Name() + " alone")});
    }
}

void Linter::LintNoCertificate(const RuleLines& rule)
{
    const auto named = Named(rule.rule);
    for (const std::string& huid : named)
    {
        if (CanSignAtAll(huid))
        {
            continue;
        }
        scratch::Order order;
        for (const std::string& other : named)
        {
            if (other != huid && CanSignAtAll(other))
            {
                order.signers.push_back(NameToSignWith(other));
            }
        }
        order.signers.push_back(m_map.parties.back().names.front());
        Add("no-certificate",
            rule.Name() + " names holder " + huid + ", who " +
                (IsThere(huid) ? "has no certificate that can sign." : "is not in SSR_HOLDER."),
            {Ask(order, rule.Name() + " alone")});
    }
}

bool Linter::IsThere(const std::string& huid) const
{
    return std::any_of(m_task.book.holders.begin(), m_task.book.holders.end(),
                       [&huid](const auto& holder) { return holder.huid == huid; });
}

void Linter::LintLimits()
{
    for (const RuleLines& wide : m_rules)
    {
        for (const RuleLines& narrow : m_rules)
        {
            if (&wide != &narrow && wide.cuid == m_task.cuid)
            {
                LintLimit(wide, narrow);
            }
        }
    }
}

bool Linter::RefusesByLimit(const RuleLines& rule, const Spot& spot)
{
    const Line& line = rule.Of(spot.row, spot.isDistributed);
    return line[spot.cell].number == scratch::kRefused &&
           line[spot.cell].reasonCode == kLimitReason &&
           std::any_of(line.begin(), line.end(),
                       [](const Verdict& verdict) { return verdict.number == scratch::kAccepted; });
}

void Linter::LintLimit(const RuleLines& wide, const RuleLines& narrow)
{
    const auto spot = Find(
        [&](const Spot& each)
        {
            return wide.Of(each.row, each.isDistributed)[each.cell].number == scratch::kAccepted &&
                   RefusesByLimit(narrow, each);
        });
    if (spot)
    {
        Add("limit-vetoed",
            wide.Name() + " accepts this order of " + m_map.rows[spot->row].label + ", but " +
                narrow.Name() + " refuses it by its limit, and one refusal decides.",
            {Ask(OrderAt(*spot))});
    }
}

} // namespace authority
