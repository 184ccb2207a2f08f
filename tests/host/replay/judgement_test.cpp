// What is told of one past order from the decisions in the ways in which it can have been judged.

#include "host/replay/judgement.h"

#include <gtest/gtest.h>

namespace testing_support
{
namespace
{

using replay::Cause;
using replay::JudgedWay;
using replay::Judgement;
using replay::PastCheck;
using replay::Tally;
using scratch::kAccepted;
using scratch::kNoRule;
using scratch::kRefused;

/// A change that rules alone cause.
JudgedWay Way(unsigned int before, unsigned int after)
{
    JudgedWay way;
    way.way.type = 1;
    way.before = way.holdersOnly = before;
    way.rulesOnly = way.after = after;
    return way;
}

JudgedWay OtherTypes(JudgedWay way)
{
    way.way.isOtherTypes = true;
    return way;
}

PastCheck Recorded(unsigned int verdict)
{
    PastCheck check;
    check.verdict = verdict;
    return check;
}

TEST(Judgements, AreUnchangedWhereEveryWayIs)
{
    const Judgement judgement =
        replay::Weigh(Recorded(kAccepted), {Way(kAccepted, kAccepted), Way(kAccepted, kAccepted)});

    EXPECT_FALSE(judgement.isChanged);
    EXPECT_FALSE(judgement.isAgainstRecord);
}

TEST(Judgements, AreCertainWhereEveryWayChangesAlike)
{
    const Judgement judgement =
        replay::Weigh(Recorded(kAccepted), {Way(kAccepted, kRefused), Way(kAccepted, kRefused)});

    EXPECT_TRUE(judgement.isChanged);
    EXPECT_TRUE(judgement.isCertain);
}

TEST(Judgements, DependOnTheWayWhereOneDoesNotChangeOrChangesOtherwise)
{
    for (const unsigned int other : {kAccepted, kNoRule})
    {
        const Judgement judgement =
            replay::Weigh(Recorded(kAccepted), {Way(kAccepted, kRefused), Way(kAccepted, other)});

        EXPECT_TRUE(judgement.isChanged);
        EXPECT_FALSE(judgement.isCertain);
    }
}

TEST(Judgements, LeaveOutWaysThatTheRecordContradicts)
{
    const Judgement judgement =
        replay::Weigh(Recorded(kAccepted), {Way(kAccepted, kRefused), Way(kRefused, kRefused)});

    EXPECT_TRUE(judgement.isCertain);
    EXPECT_EQ(judgement.counted.size(), 1U);
    EXPECT_EQ(judgement.leftOut.size(), 1U);
}

TEST(Judgements, CountEveryWayWhereTheRecordContradictsAll)
{
    const Judgement judgement =
        replay::Weigh(Recorded(kNoRule), {Way(kAccepted, kRefused), Way(kRefused, kRefused)});

    EXPECT_TRUE(judgement.isAgainstRecord);
    EXPECT_TRUE(judgement.isChanged);
    EXPECT_FALSE(judgement.isCertain);
    EXPECT_EQ(judgement.counted.size(), 2U);
}

TEST(Judgements, LeaveOutOrderTypesWithoutTermsWhereNothingIsDecided)
{
    const Judgement beside = replay::Weigh(
        Recorded(kNoRule), {Way(kNoRule, kAccepted), OtherTypes(Way(kNoRule, kNoRule))});
    const Judgement decided = replay::Weigh(
        Recorded(kNoRule), {Way(kNoRule, kNoRule), OtherTypes(Way(kNoRule, kAccepted))});
    const Judgement alone = replay::Weigh(Recorded(kNoRule), {OtherTypes(Way(kNoRule, kNoRule))});

    EXPECT_TRUE(beside.isCertain);
    EXPECT_TRUE(decided.isChanged);
    EXPECT_FALSE(decided.isCertain);
    EXPECT_FALSE(alone.isChanged);
    EXPECT_FALSE(alone.isAgainstRecord);
}

TEST(Judgements, TellRulesFromHolders)
{
    JudgedWay way = Way(kAccepted, kRefused);
    EXPECT_EQ(replay::CauseOf(way), Cause::Rules);
    way.rulesOnly = kAccepted;
    EXPECT_EQ(replay::CauseOf(way), Cause::Both); // neither alone
    way.holdersOnly = kRefused;
    EXPECT_EQ(replay::CauseOf(way), Cause::Holders);
    way.rulesOnly = kRefused;
    EXPECT_EQ(replay::CauseOf(way), Cause::Both); // either alone
}

TEST(Judgements, HaveBothCausesWhereEachWayHasAnother)
{
    JudgedWay byHolders = Way(kAccepted, kRefused);
    byHolders.holdersOnly = kRefused;
    byHolders.rulesOnly = kAccepted;

    const Judgement judgement =
        replay::Weigh(Recorded(kAccepted), {Way(kAccepted, kRefused), byHolders});

    EXPECT_EQ(judgement.cause, Cause::Both);
}

TEST(Judgements, AreCountedByWhatTheyBecome)
{
    Tally tally;
    for (const unsigned int after : {kRefused, kNoRule, kAccepted})
    {
        tally.AddJudged(replay::Weigh(Recorded(kAccepted), {Way(kAccepted, after)}));
    }
    tally.AddJudged(replay::Weigh(Recorded(kRefused), {Way(kRefused, kAccepted)}));
    tally.AddJudged(
        replay::Weigh(Recorded(kRefused), {Way(kRefused, kAccepted), Way(kRefused, kRefused)}));
    tally.AddJudged(replay::Weigh(Recorded(kNoRule), {Way(kRefused, kRefused)}));

    EXPECT_EQ(tally.refused, 1U);
    EXPECT_EQ(tally.withoutRule, 1U);
    EXPECT_EQ(tally.accepted, 1U);
    EXPECT_EQ(tally.dependent, 1U);
    EXPECT_EQ(tally.againstRecord, 1U);
}

} // namespace
} // namespace testing_support
