#include "host/authority/linter.h"

#include <algorithm>
#include <map>

namespace authority
{

std::vector<Finding> Linter::Run(std::size_t& judged)
{
    m_rules = JudgeRulesAlone(m_copy, m_judge, m_task.book, m_map);
    for (const RuleLines& rule : m_rules)
    {
        if (rule.cuid == m_task.cuid)
        {
            LintRuleAlone(rule);
        }
    }
    m_copy.Replace(m_task.book);
    LintLimits();
    LintNobodySatisfies();
    LintAnyoneMaySign();
    LintSecondSignatures();
    LintExpiredCertificates();
    LintReasons();
    judged += m_judge.Count();
    Sort();
    return std::move(m_findings);
}

scratch::Order Linter::OrderAt(const Spot& spot) const
{
    const Amounts amounts = UsualOf(m_map.cells[spot.cell]);
    return {m_map.rows[spot.row].signers, amounts.total, amounts.largest, spot.isDistributed};
}

bool Linter::Accepts(bool isDistributed) const
{
    return Find(
               [&](const Spot& spot) {
                   return spot.isDistributed == isDistributed &&
                          At(spot).number == scratch::kAccepted;
               })
        .has_value();
}

// Of an order that comes with all its signatures: one by one, those that are there are accepted
// before the order is complete.
void Linter::LintNobodySatisfies()
{
    if (m_task.isOtherTypes || Accepts(false))
    {
        return;
    }
    // A refusal tells more than the want of a rule.
    const auto refused =
        Find([this](const Spot& spot)
             { return !spot.isDistributed && At(spot).number == scratch::kRefused; });
    Add("nobody-satisfies",
        std::string("nobody can satisfy the contract, whoever signs and whatever the amounts") +
            (Accepts(true) ? ", unless signatures arrive one by one." : "."),
        {Ask(OrderAt(refused.value_or(Spot{1, 0, false})))});
}

void Linter::LintAnyoneMaySign()
{
    const std::size_t anyone = m_map.parties.size() - 1;
    const auto open = Find(
        [&](const Spot& spot)
        {
            const auto& parties = m_map.rows[spot.row].parties;
            return (parties.empty() || parties == std::vector<std::size_t>{anyone}) &&
                   At(spot).number == scratch::kAccepted;
        });
    if (open)
    {
        const bool needsNobody = m_map.rows[open->row].parties.empty();
        Add("anyone-may-sign",
            needsNobody ? "anyone may sign, and an order without any signature is accepted, too."
                        : "anyone may sign.",
            {Ask(OrderAt(*open))});
    }
}

void Linter::LintSecondSignatures()
{
    std::map<std::size_t, std::size_t> singles; // rows by party
    for (std::size_t row = 0; row < m_map.rows.size(); ++row)
    {
        if (m_map.rows[row].parties.size() == 1)
        {
            singles[m_map.rows[row].parties.front()] = row;
        }
    }
    for (const bool isDistributed : {false, true})
    {
        for (const auto& [party, single] : singles)
        {
            LintSecondSignature(party, single, isDistributed);
        }
    }
}

void Linter::LintSecondSignature(std::size_t party, std::size_t single, bool isDistributed)
{
    std::string others;
    std::vector<Witness> witnesses;
    for (std::size_t row = 0; row < m_map.rows.size(); ++row)
    {
        const auto& parties = m_map.rows[row].parties;
        if (parties.size() != 2 || (parties[0] != party && parties[1] != party))
        {
            continue;
        }
        for (std::size_t cell = 0; cell < m_map.cells.size(); ++cell)
        {
            const Spot alone = {single, cell, isDistributed};
            const Spot both = {row, cell, isDistributed};
            if (At(alone).number != scratch::kAccepted || At(both).number != scratch::kRefused)
            {
                continue;
            }
            const std::size_t other = parties[0] == party ? parties[1] : parties[0];
            others += (others.empty() ? "" : ", ") + m_map.parties[other].label;
            if (witnesses.empty())
            {
                witnesses = {Ask(OrderAt(alone)), Ask(OrderAt(both))};
            }
            break;
        }
    }
    if (!witnesses.empty())
    {
        Add("second-refuses",
            m_map.parties[party].label +
                " is accepted alone and refused when one of these "
                "signs, too (VEU " +
                (isDistributed ? "on" : "off") + "): " + others + ".",
            std::move(witnesses));
    }
}

void Linter::LintExpiredCertificates()
{
    for (const rulebook::Holder& holder : m_task.book.holders)
    {
        for (const rulebook::Certificate& certificate : holder.certificates)
        {
            const std::string expires = certificate.expires.value_or(std::string());
            if (!expires.empty() && expires.substr(0, m_task.today.size()) < m_task.today &&
                CanSign(certificate.commonName))
            {
                LintExpired(holder, certificate);
            }
        }
    }
}

void Linter::LintExpired(const rulebook::Holder& holder, const rulebook::Certificate& certificate)
{
    for (const unsigned int verdict : {scratch::kAccepted, scratch::kRefused})
    {
        const auto spot =
            Find([&](const Spot& each)
                 { return At(each).number == verdict && SignerOf(each.row, holder, certificate); });
        if (!spot)
        {
            continue;
        }
        scratch::Order order = OrderAt(*spot);
        std::string& signer = order.signers[*SignerOf(spot->row, holder, certificate)];
        signer = certificate.commonName;
        Witness witness = Ask(order);
        // Where anyone else's name does as well, the certificate does not count.
        signer = m_map.parties.back().names.back();
        const Witness without = Ask(order);
        if (witness.decision.verdict == verdict && without.decision.verdict != verdict)
        {
            Add("expired-certificate",
                "the certificate " + certificate.commonName + " of " + NameOf(holder) +
                    " expired on " + *certificate.expires + " and still counts.",
                {std::move(witness)});
            return;
        }
    }
}

std::optional<std::size_t> Linter::SignerOf(std::size_t row, const rulebook::Holder& holder,
                                            const rulebook::Certificate& certificate) const
{
    const auto& parties = m_map.rows[row].parties;
    if (parties.empty() || parties.size() > 2)
    {
        return std::nullopt;
    }
    for (std::size_t place = 0; place < parties.size(); ++place)
    {
        const Party& party = m_map.parties[parties[place]];
        const bool isAlike = !party.isShared && party.huids.size() == 1 &&
                             party.huids.front() == holder.huid &&
                             (parties.size() == 1 || parties[0] != parties[1]);
        if (isAlike || party.names.front() == certificate.commonName)
        {
            return place;
        }
    }
    return std::nullopt;
}

void Linter::LintReasons()
{
    struct Doubt
    {
        std::string text;
        Witness witness;
    };
    std::vector<Doubt> doubts;
    for (std::size_t left = 0; left < m_rules.size(); ++left)
    {
        for (std::size_t right = left + 1; right < m_rules.size(); ++right)
        {
            const auto spot =
                Find([&](const Spot& each)
                     { return HaveOtherReasons(m_rules[left], m_rules[right], each); });
            if (spot)
            {
                doubts.push_back({m_rules[left].Name() + " and " + m_rules[right].Name() +
                                      " refuse with different reason codes; the one that the "
                                      "database returns first is told.",
                                  Ask(OrderAt(*spot))});
            }
        }
    }
    if (doubts.empty())
    {
        return;
    }
    m_copy.Replace(InReverse(m_task.book));
    for (Doubt& doubt : doubts)
    {
        Witness reversed = Ask(doubt.witness.order, "the rules in reverse order");
        if (reversed.decision.reasonCode != doubt.witness.decision.reasonCode)
        {
            Add("reason-by-order", doubt.text, {doubt.witness, std::move(reversed)});
        }
    }
    m_copy.Replace(m_task.book);
}

bool Linter::HaveOtherReasons(const RuleLines& left, const RuleLines& right, const Spot& spot)
{
    const Verdict& one = left.Of(spot.row, spot.isDistributed)[spot.cell];
    const Verdict& other = right.Of(spot.row, spot.isDistributed)[spot.cell];
    return one.number == scratch::kRefused && other.number == scratch::kRefused &&
           one.reasonCode != other.reasonCode;
}

rulebook::RuleBook Linter::InReverse(rulebook::RuleBook book)
{
    std::reverse(book.contracts.begin(), book.contracts.end());
    for (rulebook::Contract& contract : book.contracts)
    {
        std::reverse(contract.rules.begin(), contract.rules.end());
    }
    return book;
}

void Linter::Sort()
{
    std::map<std::string, std::size_t> places;
    for (const LintCode& each : LintCodes())
    {
        places.emplace(each.code, places.size());
    }
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [&places](const Finding& left, const Finding& right)
                     { return places.at(left.code) < places.at(right.code); });
}

} // namespace authority
