#pragma once

#include "host/replay/arbiter.h"
#include "host/replay/past_check.h"

#include <cstdint>
#include <vector>

namespace replay
{

/// What a changed decision comes from.
enum class Cause
{
    Rules,
    Holders,
    Both, ///< neither alone would do it, either alone would, or each way has another cause
};

/// The cause of one way's change.
Cause CauseOf(const JudgedWay& judged);

/// A past order by the rules before and after.
///
/// The ways in which the rules before decide as recorded are those in which it can have been
/// judged; where none does, the rules were others then, and every way counts. An order type without
/// terms, where nothing is decided before or after, never counts beside one with terms: hardly
/// anybody sends such orders, and each one without a rule would seem to depend on it.
struct Judgement
{
    std::vector<JudgedWay> counted;
    std::vector<JudgedWay> leftOut;
    bool isAgainstRecord = false; ///< no way is decided as recorded
    bool isChanged = false;       ///< in some way that counts
    bool isCertain = false;       ///< in every one, and to the same decision
    Cause cause = Cause::Rules;
};

/// `judged` must not be empty.
Judgement Weigh(const PastCheck& check, const std::vector<JudgedWay>& judged);

/// Numbers of past orders, and of what they were read from.
struct Tally
{
    std::uint64_t orders = 0;
    std::uint64_t rows = 0;
    std::uint64_t refused = 0; ///< newly, as the next two
    std::uint64_t accepted = 0;
    std::uint64_t withoutRule = 0;
    std::uint64_t dependent = 0; ///< changed in some way, but not surely
    std::uint64_t againstRecord = 0;
    std::uint64_t notJudged = 0;
    std::uint64_t maybeSeveral = 0;
    std::uint64_t maybeParts = 0;

    void AddRead(const PastCheck& check);
    void AddJudged(const Judgement& judgement);
    std::uint64_t Changed() const { return refused + accepted + withoutRule + dependent; }
};

} // namespace replay
