#pragma once

#include "host/authority/lint.h"
#include "host/authority/rule_lines.h"

#include <optional>
#include <string>
#include <vector>

namespace authority
{

/// Where in a map a verdict stands.
struct Spot
{
    std::size_t row;
    std::size_t cell;
    bool isDistributed;
};

/// Looks at one kind of order: at each rule alone, and at the whole contract.
class Linter
{
public:
    Linter(scratch::Copy& copy, const LintTask& task)
        : m_copy(copy), m_task(task), m_judge(copy, task.kind),
          m_map(MakeMap(m_judge, task.book, task.kind))
    {
    }

    std::vector<Finding> Run(std::size_t& judged);

private:
    const Line& LineOf(const Row& row, bool isDistributed) const
    {
        return isDistributed ? row.distributed : row.direct;
    }

    const Verdict& At(const Spot& spot) const
    {
        return LineOf(m_map.rows[spot.row], spot.isDistributed)[spot.cell];
    }

    /// The first spot for which `is` holds, without distributed signatures before with them.
    template <typename Is>
    std::optional<Spot> Find(Is&& is) const
    {
        for (const bool isDistributed : {false, true})
        {
            for (std::size_t row = 0; row < m_map.rows.size(); ++row)
            {
                for (std::size_t cell = m_map.cells.size(); cell-- > 0;)
                {
                    if (const Spot spot = {row, cell, isDistributed}; is(spot))
                    {
                        return spot;
                    }
                }
            }
        }
        return std::nullopt;
    }

    scratch::Order OrderAt(const Spot& spot) const;
    Witness Ask(const scratch::Order& order, const std::string& judgedBy = {})
    {
        return {order, judgedBy, m_judge.Ask(order)};
    }

    void Add(const char* code, const std::string& text, std::vector<Witness> witnesses)
    {
        m_findings.push_back({code, text, std::move(witnesses)});
    }

    /// The name that a holder would sign with; anyone else's where he has none.
    std::string NameToSignWith(const std::string& huid) const;
    bool CanSignAtAll(const std::string& huid) const;
    static std::vector<std::string> Named(const rulebook::Rule& rule);
    /// An order signed by nobody, too.
    static bool AllowsAnyone(const RuleLines& rule);

    /// The copy holds this rule alone.
    void LintRuleAlone(const RuleLines& rule);
    void LintNeverDecides(const RuleLines& rule);
    void LintNoLimit(const RuleLines& rule);
    /// One signature, or two of one holder.
    bool IsOneHolder(const Row& row) const;
    void LintPairByOne(const RuleLines& rule);
    void LintNoCertificate(const RuleLines& rule);
    bool IsThere(const std::string& huid) const;

    void LintLimits();
    /// By its limit: the same rule accepts the same signers for less.
    static bool RefusesByLimit(const RuleLines& rule, const Spot& spot);
    void LintLimit(const RuleLines& wide, const RuleLines& narrow);

    bool Accepts(bool isDistributed) const;
    void LintNobodySatisfies();
    void LintAnyoneMaySign();
    void LintSecondSignatures();
    void LintSecondSignature(std::size_t party, std::size_t single, bool isDistributed);
    void LintExpiredCertificates();
    void LintExpired(const rulebook::Holder& holder, const rulebook::Certificate& certificate);
    /// The place among the row's signers at which the certificate can stand, and counts.
    std::optional<std::size_t> SignerOf(std::size_t row, const rulebook::Holder& holder,
                                        const rulebook::Certificate& certificate) const;
    void LintReasons();
    static bool HaveOtherReasons(const RuleLines& left, const RuleLines& right, const Spot& spot);
    static rulebook::RuleBook InReverse(rulebook::RuleBook book);
    void Sort();

    scratch::Copy& m_copy;
    const LintTask& m_task;
    scratch::Judge m_judge;
    AuthorityMap m_map;
    std::vector<RuleLines> m_rules;
    std::vector<Finding> m_findings;
};

} // namespace authority
