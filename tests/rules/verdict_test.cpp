#include "rules/verdict.h"

#include "rules/check_signatures.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

struct VerdictCase
{
    const char* name;
    std::vector<std::int32_t> statuses;
    std::uint32_t verdict;
    std::wstring reasonText; ///< of the decision with this index, "before" when none writes it
};

class VerdictOfDecisions : public testing::TestWithParam<VerdictCase>
{
};

TEST_P(VerdictOfDecisions, IsReducedInOrder)
{
    TArray<ruleSign> decisions(128);
    for (std::size_t i = 0; i < GetParam().statuses.size(); ++i)
    {
        ruleSign decision;
        decision.status = GetParam().statuses[i];
        decision.reasonCode = "AM02";
        decision.reasonText = std::to_wstring(i).c_str();
        decisions.Add(decision);
    }
    TSimpleString code = "before";
    TSimpleStringW text = L"before";

    EXPECT_EQ(rules::ReduceDecisions(decisions, code, text), GetParam().verdict);
    EXPECT_EQ(std::wstring(text.SafeGetString()), GetParam().reasonText);
    EXPECT_STREQ(code.SafeGetString(),
                 GetParam().verdict == 2 && GetParam().reasonText != L"before" ? "AM02" : "before");
}

const VerdictCase kVerdicts[] = {
    {"OneSuccess", {1}, 1, L"before"},
    {"OneFailure", {2}, 2, L"0"},
    {"SuccessThenFailure", {1, 2}, 2, L"1"},
    {"FailureThenSuccess", {2, 1}, 2, L"0"},
    {"FirstOfTwoFailuresWritesTheReason", {2, 2}, 2, L"0"},
    {"Undecided", {0}, 0, L"before"},
    {"UndecidedAfterSuccessStaysSuccess", {1, 0}, 1, L"before"},
    {"SuccessAfterUndecided", {0, 1}, 1, L"before"},
    {"FailureAfterUndecided", {0, 2}, 2, L"1"},
    {"OtherStatusLeavesTheStartingVerdict", {3}, 2, L"before"},
    {"OtherStatusLeavesSuccess", {1, 7}, 1, L"before"},
    {"OtherStatusLeavesUndecided", {0, -1}, 0, L"before"},
};

INSTANTIATE_TEST_SUITE_P(Tables, VerdictOfDecisions, testing::ValuesIn(kVerdicts),
                         [](const auto& row) { return row.param.name; });

TEST(Verdict, FailureWithoutReasonEmptiesBothOutputs)
{
    TArray<ruleSign> decisions(128);
    ruleSign decision;
    decision.status = rules::kStatusFailed;
    decisions.Add(decision);
    TSimpleString code = "NARR";
    TSimpleStringW text = L"amounts unknown";

    EXPECT_EQ(rules::ReduceDecisions(decisions, code, text), rules::kVerdictFailed);
    EXPECT_TRUE(code.IsEmpty());
    EXPECT_TRUE(text.IsEmpty());
}

struct HeadingCase
{
    const char* name;
    std::uint32_t verdict;
    const char* title;
    const wchar_t* event;
    unsigned short level;
};

class HeadingOfVerdict : public testing::TestWithParam<HeadingCase>
{
};

TEST_P(HeadingOfVerdict, TitlesTheEvent)
{
    const rules::VerdictHeading& heading = rules::HeadingOf(GetParam().verdict);

    EXPECT_STREQ(heading.title, GetParam().title);
    EXPECT_EQ(heading.level, GetParam().level);
    EXPECT_STREQ(rules::EventText(heading, L"line\r\n").SafeGetString(), GetParam().event);
}

constexpr HeadingCase kHeadings[] = {
    {"NotFound", 0, "CHECK SIGNATURES RULES NOT FOUND",
     L"CHECK SIGNATURES RULES NOT FOUND\r\nline\r\n", 1},
    {"Success", 1, "CHECK SIGNATURES RULES SUCCESS", L"CHECK SIGNATURES RULES SUCCESS\r\nline\r\n",
     0},
    {"Failed", 2, "CHECK SIGNATURES RULES FAILED", L"CHECK SIGNATURES RULES FAILED\r\nline\r\n", 2},
    {"ProcessError", 3, "CHECK SIGNATURES RULES PROCESS ERROR",
     L"CHECK SIGNATURES RULES PROCESS ERROR\r\nline\r\n", 1},
    {"ProcessErrorForTheLargest", 0xFFFFFFFFU, "CHECK SIGNATURES RULES PROCESS ERROR",
     L"CHECK SIGNATURES RULES PROCESS ERROR\r\nline\r\n", 1},
};

INSTANTIATE_TEST_SUITE_P(Tables, HeadingOfVerdict, testing::ValuesIn(kHeadings),
                         [](const auto& row) { return row.param.name; });

} // namespace
