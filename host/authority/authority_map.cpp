#include "host/authority/authority_map.h"

#include "host/authority/progress.h"
#include "host/refusal.h"

#include <algorithm>
#include <map>

namespace authority
{

namespace
{

Verdict JudgeAt(scratch::Judge& judge, const std::vector<std::string>& signers, bool isDistributed,
                const Amounts& amounts)
{
    const scratch::Decision decision =
        judge.Ask({signers, amounts.total, amounts.largest, isDistributed});
    return {decision.verdict, decision.reasonCode};
}

/// Builds one map row by row.
class MapMaker
{
public:
    MapMaker(scratch::Judge& judge, const rulebook::RuleBook& book, const scratch::OrderKind& kind)
        : m_judge(judge)
    {
        m_map.kind = kind;
        m_map.parties = PartiesOf(book);
        m_map.cells = CellsOf(LimitsOf(book, kind));
    }

    AuthorityMap Make()
    {
        const std::size_t count = m_map.parties.size();
        Progress progress("rows of a map",
                          1 + count + Choices(count + 1, 2) + Choices(count + 2, 3));
        Add({});
        progress.Step();
        for (std::size_t first = 0; first < count; ++first)
        {
            Add({first});
            progress.Step();
        }
        for (std::size_t first = 0; first < count; ++first)
        {
            for (std::size_t second = first; second < count; ++second)
            {
                AddPair(first, second);
                progress.Step();
            }
        }
        for (const auto& [pair, place] : m_pairs)
        {
            for (std::size_t third = pair.second; third < count; ++third)
            {
                AddTripleThatMatters(pair.first, pair.second, third);
                progress.Step();
            }
        }
        return std::move(m_map);
    }

private:
    using Pair = std::pair<std::size_t, std::size_t>;

    bool CanSignWithOthers(std::size_t party) const { return !m_map.parties[party].breaksLookups; }

    void AddPair(std::size_t first, std::size_t second)
    {
        if (!CanSignWithOthers(first) || !CanSignWithOthers(second) || !HasNames({first, second}))
        {
            return;
        }
        m_pairs.emplace(Pair(first, second), m_map.rows.size());
        Add({first, second});
    }

    bool HasNames(const std::vector<std::size_t>& parties) const
    {
        return std::all_of(
            parties.begin(), parties.end(),
            [&](std::size_t party)
            {
                const auto needed = std::count(parties.begin(), parties.end(), party);
                return static_cast<std::size_t>(needed) <= m_map.parties[party].names.size();
            });
    }

    Row Judged(const std::vector<std::size_t>& parties)
    {
        Row row;
        row.parties = parties;
        std::map<std::size_t, std::size_t> used;
        for (const std::size_t party : parties)
        {
            const Party& each = m_map.parties[party];
            row.signers.push_back(each.names[used[party]++]);
            row.label += (row.label.empty() ? "" : " + ") + each.label;
        }
        row.label = parties.empty() ? "nobody" : row.label;
        row.direct = JudgeLine(m_judge, row.signers, false, m_map.cells);
        row.distributed = JudgeLine(m_judge, row.signers, true, m_map.cells);
        return row;
    }

    void Add(const std::vector<std::size_t>& parties) { m_map.rows.push_back(Judged(parties)); }

    // Three matter where two of them are accepted and all three are not; this can be where another
    // two are refused. A shared certificate may serve another holder when a third one signs, so
    // such threes are always asked about.
    void AddTripleThatMatters(std::size_t first, std::size_t second, std::size_t third)
    {
        if (!HasNames({first, second, third}) || m_pairs.count({first, third}) == 0 ||
            m_pairs.count({second, third}) == 0)
        {
            return;
        }
        const Row* const pairs[] = {&m_map.rows[m_pairs.at({first, second})],
                                    &m_map.rows[m_pairs.at({first, third})],
                                    &m_map.rows[m_pairs.at({second, third})]};
        const bool isConflict =
            HasConflict(pairs, &Row::direct) || HasConflict(pairs, &Row::distributed);
        const bool isShared = m_map.parties[first].isShared || m_map.parties[second].isShared ||
                              m_map.parties[third].isShared;
        if (!isConflict && !isShared)
        {
            return;
        }
        Row row = Judged({first, second, third});
        const bool isAsPairsSay = IsAsPairsSay(row.direct, pairs, &Row::direct) &&
                                  IsAsPairsSay(row.distributed, pairs, &Row::distributed);
        m_map.pairsDecide = m_map.pairsDecide && isAsPairsSay;
        // With anyone else beside two of the rules' own people, the pairs have said it already.
        const bool isAboutOthers = m_map.parties[third].huids.empty();
        if ((isConflict && !isAboutOthers) || !isAsPairsSay)
        {
            m_map.rows.push_back(std::move(row));
        }
    }

    std::vector<unsigned int> Verdicts(const Row* const (&pairs)[3], Line Row::*line,
                                       std::size_t cell) const
    {
        std::vector<unsigned int> verdicts;
        for (const Row* const pair : pairs)
        {
            verdicts.push_back((pair->*line)[cell].number);
        }
        return verdicts;
    }

    bool HasConflict(const Row* const (&pairs)[3], Line Row::*line) const
    {
        for (std::size_t cell = 0; cell < m_map.cells.size(); ++cell)
        {
            const auto verdicts = Verdicts(pairs, line, cell);
            if (std::count(verdicts.begin(), verdicts.end(), scratch::kAccepted) > 0 &&
                std::count(verdicts.begin(), verdicts.end(), scratch::kRefused) > 0)
            {
                return true;
            }
        }
        return false;
    }

    bool IsAsPairsSay(const Line& judged, const Row* const (&pairs)[3], Line Row::*line) const
    {
        for (std::size_t cell = 0; cell < m_map.cells.size(); ++cell)
        {
            if (judged[cell].number != VerdictOfPairs(Verdicts(pairs, line, cell)))
            {
                return false;
            }
        }
        return true;
    }

    scratch::Judge& m_judge;
    AuthorityMap m_map;
    std::map<Pair, std::size_t> m_pairs; // places of their rows
};

} // namespace

unsigned int VerdictOfPairs(const std::vector<unsigned int>& pairs)
{
    const auto has = [&pairs](unsigned int verdict)
    { return std::find(pairs.begin(), pairs.end(), verdict) != pairs.end(); };
    if (has(scratch::kRefused))
    {
        return scratch::kRefused;
    }
    return has(scratch::kAccepted) ? scratch::kAccepted : scratch::kNoRule;
}

Line JudgeLine(scratch::Judge& judge, const std::vector<std::string>& signers, bool isDistributed,
               const std::vector<Cell>& cells)
{
    Line line;
    for (const Cell& cell : cells)
    {
        const Verdict least = JudgeAt(judge, signers, isDistributed, LeastOf(cell));
        const Verdict greatest = JudgeAt(judge, signers, isDistributed, GreatestOf(cell));
        if (least != greatest)
        {
            throw host::Refusal(host::kCouldNotRun,
                                "the library decides differently within " + InWords(cell) +
                                    ", where no rule has a limit. Report this with the contract's "
                                    "rules.");
        }
        line.push_back(least);
    }
    return line;
}

AuthorityMap MakeMap(scratch::Judge& judge, const rulebook::RuleBook& book,
                     const scratch::OrderKind& kind)
{
    return MapMaker(judge, book, kind).Make();
}

} // namespace authority
