// The library asked about past orders on copies, and what is told when that goes wrong.

#include "host/replay/arbiter.h"

#include "database/cdatabase.h"
#include "host/query.h"
#include "host/refusal.h"
#include "host/replay/history_walk.h"
#include "host/replay/telling.h"
#include "host/rulebook/book_reading.h"
#include "tests/host/replay/replay_run.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using replay::Arbiter;
using replay::PastCheck;
using testing::HasSubstr;

class Arbiters : public ReplayTest
{
protected:
    Arbiters() : m_where{Db(), "the bank", "option --db"}
    {
        m_source.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        m_books.before = rulebook::ReadBook(m_source, m_where);
        m_books.after = m_books.before;
    }

    static PastCheck Order()
    {
        PastCheck check;
        check.key = {"DUPONTSA", "CCT", "TRESOR", 9, 1};
        check.signers = "Élodie Lefèvre";
        check.total = 900.0;
        check.largest = 900.0;
        check.verdict = scratch::kAccepted;
        return check;
    }

    CDatabase m_source;
    host::Connection m_where;
    replay::Books m_books;
};

TEST_F(Arbiters, JudgeAnOrderInEveryWay)
{
    Arbiter arbiter(m_source, m_where, m_books, {});

    const auto judged = arbiter.Judge(Order());

    ASSERT_EQ(judged.size(), 4U); // order type 1 and all others, VEU off and on
    for (const auto& way : judged)
    {
        EXPECT_EQ(way.before, way.way.isOtherTypes ? scratch::kNoRule : scratch::kAccepted);
        EXPECT_EQ(way.after, way.before);
    }
    EXPECT_EQ(arbiter.Asked(), 8U);
}

TEST_F(Arbiters, JudgeAmountsBelowZeroByThemselves)
{
    Arbiter arbiter(m_source, m_where, m_books, {1, false});
    PastCheck order = Order();
    for (const double total : {-1.0, -2.0, -1.0})
    {
        order.total = total;
        EXPECT_EQ(arbiter.Judge(order).front().before, scratch::kAccepted);
    }

    EXPECT_EQ(arbiter.Asked(), 4U);
}

TEST_F(Arbiters, GiveNothingForAContractThatNoCheckCanName)
{
    Arbiter arbiter(m_source, m_where, m_books, {});
    PastCheck order = Order();
    order.key.vpname = "O'BRIEN";

    EXPECT_TRUE(arbiter.Judge(order).empty());
    EXPECT_EQ(arbiter.Asked(), 0U);
}

TEST_F(Arbiters, RefuseAnOrderThatIsDecidedOtherwiseThanItsLike)
{
    Arbiter arbiter(m_source, m_where, m_books, {1, false});
    replay::JudgedWay judged = arbiter.Judge(Order()).front();
    EXPECT_THAT(arbiter.TraceAfter(Order(), judged), HasSubstr("#RULE SUCCEEDDED"));
    judged.after = scratch::kRefused;

    EXPECT_THROW(arbiter.TraceAfter(Order(), judged), host::Refusal);
}

TEST_F(Arbiters, ForgetWhatTheirCopiesHaveRecorded)
{
    scratch::Copy copy(m_source, m_where, m_books.before);
    scratch::Judge(copy, {Order().key, 1}).Ask({{"Élodie Lefèvre"}, 900.0, 900.0, false});
    const auto recorded = [&copy](const std::string& table)
    {
        CDatabase database;
        database.OpenEx(copy.Where().text.c_str(),
                        CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        int rows = 0;
        host::ForEachRow(database, copy.Where(), "SELECT DATETIME FROM " + table, {"DATETIME"},
                         [&rows](const host::QueryRow&) { return ++rows > 0; });
        return rows;
    };
    ASSERT_EQ(recorded("HST_SIGNRULES"), 1);
    ASSERT_EQ(recorded("EVT_JOURNAL"), 1);

    copy.ForgetChecks();

    EXPECT_EQ(recorded("HST_SIGNRULES"), 0);
    EXPECT_EQ(recorded("EVT_JOURNAL"), 0);
    EXPECT_EQ(scratch::Judge(copy, {Order().key, 1})
                  .Ask({{"Élodie Lefèvre"}, 900.0, 900.0, false})
                  .verdict,
              scratch::kAccepted);
}

TEST_F(Arbiters, ReadAnOrderAgainOnlyWhileItsRowsAreThere)
{
    Check(kBodensee, "Björn Weiß", "20000.00", "B1"); // two rows
    Check(kDupont, "Élodie Lefèvre", "900.00", "A1");
    host::Conditions all;
    replay::HistoryWalk walk(m_source, m_where, all);
    const auto newest = walk.Next();
    const auto older = walk.Next();
    ASSERT_TRUE(newest && older && !walk.Next());

    const auto again = replay::ReadAgain(m_source, m_where, older->oldestRow, older->newestRow);
    ASSERT_TRUE(again.has_value());
    EXPECT_EQ(again->orderId, "B1");
    EXPECT_EQ(again->rows, 2U);
    EXPECT_FALSE(replay::ReadAgain(m_source, m_where, older->oldestRow, newest->newestRow));

    m_database.Execute(L"DELETE FROM HST_SIGNRULES WHERE ROWNO = " +
                       std::to_wstring(older->oldestRow));
    EXPECT_FALSE(replay::ReadAgain(m_source, m_where, older->oldestRow, older->newestRow));
}

TEST_F(Arbiters, ReadAnOrderAgainWithEveryDigitOfItsAmounts)
{
    Check(kDupont, "Élodie Lefèvre", "900.00", "A1");
    m_database.Execute(
        L"UPDATE HST_SIGNRULES SET TOTAL = 123456789012.98754, MAXORDER = 98765432109.876543");
    host::Conditions all;
    const auto walked = replay::HistoryWalk(m_source, m_where, all).Next();
    ASSERT_TRUE(walked.has_value());

    const auto again = replay::ReadAgain(m_source, m_where, walked->oldestRow, walked->newestRow);

    ASSERT_TRUE(again.has_value());
    for (const replay::PastCheck& check : {*walked, *again})
    {
        EXPECT_EQ(check.total, 123456789012.98754);
        EXPECT_EQ(check.largest, 98765432109.876543);
    }
}

/// Two changed orders, of which the first is told.
struct Told
{
    Told()
    {
        findings.changes = {{1, 1, replay::Cause::Rules, false},
                            {2, 2, replay::Cause::Rules, false}};
    }

    replay::Findings findings;
    replay::Answer answer{"rules.toml", false, findings, 4, "Decided by the library."};

    static replay::ToldOrder Order(const replay::ChangedOrder& change)
    {
        replay::ToldOrder order;
        order.check.newestRow = change.newestRow;
        order.judgement.counted = {{{1, false, false}, 1, 1, 2, 2}};
        order.reasons = {"a reason"};
        return order;
    }
};

TEST(ReplayTelling, EndsTheJsonObjectWithTheFailureThatComesInItsMiddle)
{
    const Told told;
    std::optional<host::Refusal> failure;
    testing::internal::CaptureStdout();

    replay::PrintAsJson(
        told.answer,
        [](const replay::ChangedOrder& change)
        {
            if (change.newestRow == 2)
            {
                throw host::Refusal(host::kCouldNotRun, "the database is gone");
            }
            return std::optional(Told::Order(change));
        },
        failure);

    const auto json = nlohmann::json::parse(testing::internal::GetCapturedStdout());
    EXPECT_EQ(json["changes"].size(), 1U);
    EXPECT_EQ(json["error"], "the database is gone");
    EXPECT_EQ(json["status"], 3);
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->Status(), 3);
}

TEST(ReplayTelling, CountsOrdersThatHaveLeftTheHistory)
{
    const Told told;
    const auto tell = [](const replay::ChangedOrder& change)
    { return change.newestRow == 2 ? std::nullopt : std::optional(Told::Order(change)); };
    std::optional<host::Refusal> failure;
    testing::internal::CaptureStdout();

    const std::size_t inJson = replay::PrintAsJson(told.answer, tell, failure);
    const auto json = nlohmann::json::parse(testing::internal::GetCapturedStdout());
    testing::internal::CaptureStdout();
    const std::size_t inWords = replay::PrintInWords(told.answer, tell);
    testing::internal::GetCapturedStdout();

    EXPECT_EQ(inJson, 1U);
    EXPECT_EQ(json["changes"].size(), 1U);
    EXPECT_EQ(json.count("error"), 0U);
    EXPECT_EQ(inWords, 1U);
}

TEST(ReplayTelling, GroupsTheDigitsOfLargeNumbers)
{
    Told told;
    told.findings.changes.clear();
    told.findings.tally.orders = 812334;
    told.findings.tally.refused = 4;
    told.findings.tally.accepted = 1019;
    testing::internal::CaptureStdout();

    replay::PrintInWords(told.answer, nullptr);

    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                testing::StartsWith("4 of 812,334 past orders would now be refused, 1,019 newly "
                                    "accepted.\n"));
}

} // namespace
} // namespace testing_support
