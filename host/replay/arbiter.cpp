#include "host/replay/arbiter.h"

#include "host/check_request.h"
#include "host/refusal.h"
#include "host/scratch/interruption.h"

#include <algorithm>

namespace replay
{

namespace
{

// Beyond these, what is remembered is forgotten and asked again.
constexpr std::size_t kMostKeys = 4096;
constexpr std::size_t kMostKnownBytes = std::size_t{8} << 20U;
constexpr std::size_t kBytesOfAnEntry = 128;
// The copies record every order that is judged on them.
constexpr std::size_t kMostRecorded = 20000;

std::string TextOf(const rulebook::ContractKey& key)
{
    constexpr char kBetween = '\x1f';
    return key.vpname + kBetween + key.vfname + kBetween + key.vcname + kBetween +
           std::to_string(key.protocol) + kBetween + std::to_string(key.server);
}

void Append(const std::vector<double>& more, std::vector<double>& limits)
{
    limits.insert(limits.end(), more.begin(), more.end());
    std::sort(limits.begin(), limits.end());
}

authority::Limits LimitsOf(const Books& books, const scratch::OrderKind& kind)
{
    authority::Limits limits = authority::LimitsOf(books.before, kind);
    const authority::Limits after = authority::LimitsOf(books.after, kind);
    Append(after.total, limits.total);
    Append(after.largest, limits.largest);
    return limits;
}

// The band between two limits that the amount lies in, its upper one included. Below 0, where no
// limits were looked for, each amount is a band of its own.
std::string BandOf(double amount, const std::vector<double>& limits)
{
    if (amount < 0.0)
    {
        return std::to_string(amount);
    }
    return std::to_string(std::lower_bound(limits.begin(), limits.end(), amount) - limits.begin());
}

scratch::Order OrderOf(const PastCheck& check, const Way& way)
{
    return {host::SplitSigners(check.signers), check.total, check.largest, way.isDistributed};
}

bool CanBeNamed(const scratch::Copy& copy, const scratch::OrderKind& kind)
{
    try
    {
        const scratch::Judge judge(copy, kind);
        return true;
    }
    catch (const host::Refusal&)
    {
        return false;
    }
}

} // namespace

Arbiter::Arbiter(CDatabase& source, const host::Connection& connection, const Books& books,
                 const AskedWays& asked)
    : m_books(books), m_askedWays(asked), m_before(source, connection, books.before),
      m_after(source, connection, books.after)
{
    if (books.changesHolders && books.changesContracts)
    {
        m_holdersOnly.emplace(source, connection, books.holdersOnly);
        m_rulesOnly.emplace(source, connection, books.rulesOnly);
    }
}

std::vector<JudgedWay> Arbiter::Judge(const PastCheck& check)
{
    scratch::Interruption::Check();
    const KeyFacts& facts = FactsOf(check.key);
    std::vector<JudgedWay> judged;
    for (std::size_t index = 0; facts.canBeNamed && index < facts.ways.size(); ++index)
    {
        judged.push_back(JudgeWay(check, facts, index));
    }
    return judged;
}

const Arbiter::KeyFacts& Arbiter::FactsOf(const rulebook::ContractKey& key)
{
    const std::string text = TextOf(key);
    if (const auto known = m_keys.find(text); known != m_keys.end())
    {
        return known->second;
    }
    if (m_keys.size() == kMostKeys)
    {
        m_keys.clear();
    }
    KeyFacts facts;
    facts.number = m_nextNumber++;
    facts.ways = WaysOf(m_books, key, m_askedWays);
    facts.canBeNamed = CanBeNamed(m_before, {key, facts.ways.front().type});
    for (const Way& way : facts.ways)
    {
        facts.limits.push_back(LimitsOf(m_books, {key, way.type}));
    }
    return m_keys.emplace(text, std::move(facts)).first->second;
}

JudgedWay Arbiter::JudgeWay(const PastCheck& check, const KeyFacts& facts, std::size_t index)
{
    const authority::Limits& limits = facts.limits[index];
    const std::string text = std::to_string(facts.number) + ' ' + std::to_string(index) + ' ' +
                             BandOf(check.total, limits.total) + ' ' +
                             BandOf(check.largest, limits.largest) + ' ' + check.signers;
    if (const auto known = m_known.find(text); known != m_known.end())
    {
        return known->second;
    }
    const std::size_t bytes = text.size() + kBytesOfAnEntry;
    if (m_knownBytes + bytes > kMostKnownBytes)
    {
        m_known.clear();
        m_knownBytes = 0;
    }
    m_knownBytes += bytes;
    return m_known.emplace(text, AskAll(check, facts.ways[index])).first->second;
}

JudgedWay Arbiter::AskAll(const PastCheck& check, const Way& way)
{
    JudgedWay judged;
    judged.way = way;
    judged.before = Ask(m_before, check, way);
    judged.after = Ask(m_after, check, way);
    judged.holdersOnly = m_holdersOnly            ? Ask(*m_holdersOnly, check, way)
                         : m_books.changesHolders ? judged.after
                                                  : judged.before;
    judged.rulesOnly = m_rulesOnly                ? Ask(*m_rulesOnly, check, way)
                       : m_books.changesContracts ? judged.after
                                                  : judged.before;
    return judged;
}

unsigned int Arbiter::Ask(const scratch::Copy& copy, const PastCheck& check, const Way& way)
{
    CountOne();
    return scratch::Judge(copy, {check.key, way.type}).Ask(OrderOf(check, way)).verdict;
}

std::string Arbiter::TraceAfter(const PastCheck& check, const JudgedWay& judged)
{
    CountOne();
    std::string trace;
    const auto decision = scratch::Judge(m_after, {check.key, judged.way.type})
                              .AskTraced(OrderOf(check, judged.way), trace);
    if (decision.verdict != judged.after)
    {
        throw host::Refusal(host::kCouldNotRun,
                            "the past order in row " + std::to_string(check.newestRow) +
                                " is not decided as others between the same limits are, so the "
                                "comparison is not to be trusted.");
    }
    return trace;
}

void Arbiter::CountOne()
{
    ++m_asked;
    if (++m_askedSinceClearing < kMostRecorded)
    {
        return;
    }
    m_askedSinceClearing = 0;
    m_before.ForgetChecks();
    m_after.ForgetChecks();
    for (auto* const half : {&m_holdersOnly, &m_rulesOnly})
    {
        if (*half)
        {
            (*half)->ForgetChecks();
        }
    }
}

} // namespace replay
