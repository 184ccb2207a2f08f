#pragma once

#include "host/authority/bands.h"
#include "host/connection.h"
#include "host/replay/past_check.h"
#include "host/replay/ways.h"
#include "host/scratch/copy.h"
#include "host/scratch/judge.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

class CDatabase;

namespace replay
{

/// What the library decides about an order in one way of judging it.
struct JudgedWay
{
    Way way;
    unsigned int before = 0;      ///< by the rules of the database
    unsigned int holdersOnly = 0; ///< by the same with the changed holders
    unsigned int rulesOnly = 0;   ///< by the same with the changed contracts
    unsigned int after = 0;       ///< by all that is changed
};

/// Has past orders judged by the library, by the rules before and after, each on a copy of its
/// own. Orders that no rule can tell apart (the same contract and signers, amounts between the same
/// limits) are asked about once; what is remembered is bounded.
class Arbiter
{
public:
    /// Raises host::Refusal with kCouldNotRun. `books` must outlive it.
    Arbiter(CDatabase& source, const host::Connection& connection, const Books& books,
            const AskedWays& asked);

    /// The decision in each way. None when no check can name the contract. Raises host::Refusal
    /// with kCouldNotRun when the library cannot judge or a signal has come.
    std::vector<JudgedWay> Judge(const PastCheck& check);

    /// The library's trace of judging it by the changed rules, on its own amounts. Raises as Judge.
    std::string TraceAfter(const PastCheck& check, const JudgedWay& judged);

    /// How many orders the library judged.
    std::size_t Asked() const noexcept { return m_asked; }
    std::string Provenance() const { return m_before.Provenance(); }

private:
    /// What is worked out once for all orders of a contract's key.
    struct KeyFacts
    {
        std::size_t number = 0; ///< never given twice
        bool canBeNamed = true;
        std::vector<Way> ways;
        std::vector<authority::Limits> limits; ///< of each way, before and after together
    };

    const KeyFacts& FactsOf(const rulebook::ContractKey& key);
    JudgedWay JudgeWay(const PastCheck& check, const KeyFacts& facts, std::size_t index);
    JudgedWay AskAll(const PastCheck& check, const Way& way);
    unsigned int Ask(const scratch::Copy& copy, const PastCheck& check, const Way& way);
    void CountOne();

    const Books& m_books;
    AskedWays m_askedWays;
    scratch::Copy m_before;
    std::optional<scratch::Copy> m_holdersOnly; ///< where both halves are changed, as the next
    std::optional<scratch::Copy> m_rulesOnly;
    scratch::Copy m_after;
    std::unordered_map<std::string, KeyFacts> m_keys;
    std::size_t m_nextNumber = 0;
    std::unordered_map<std::string, JudgedWay> m_known;
    std::size_t m_knownBytes = 0;
    std::size_t m_asked = 0;
    std::size_t m_askedSinceClearing = 0;
};

} // namespace replay
