#include "tests/rules/check_fixture.h"

#include "database/cdbexception.h"
#include "database/guard_database.h"
#include "rules/cuidrule.h"
#include "support/odbc_errors.h"
#include "tests/signers/failing_rows.h"
#include "tests/testing/failing_allocations.h"

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::AllocationLimit;
using testing_support::Contract;
using testing_support::FailOnRead;
using testing_support::Holder;
using testing_support::MessageLine;
using testing_support::RunsOnSqlite;

constexpr char kUnreachable[] = "Driver=/nowhere/no-such-driver.so;Database=none";

class CheckFailure : public testing_support::CheckTest
{
protected:
    /// The error text that the product gives for a failed opening.
    static std::string OpeningError(const char* connexionString)
    {
        std::string text;
        CDatabase database;
        database::GuardDatabase(
            [&] {
                database.OpenEx(connexionString,
                                CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
            },
            [&](const CDBException& raised) { text = raised.GetText(); }, [] {});
        return text;
    }
};

// Opening the session's connection.

TEST_F(CheckFailure, ConnectionThatCannotBeOpenedEndsTheCheck)
{
    connexionString = kUnreachable;

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    ExpectNotRun(nullptr);
    EXPECT_EQ(trail.problem.SafeGetString(), OpeningError(kUnreachable));
    EXPECT_EQ(session.Get(), nullptr) << "let go, so that the next check opens again";
    EXPECT_THAT(trace.Lines(),
                testing::EndsWith("VEU      |NO\nException|" + OpeningError(kUnreachable) + "\n"));
}

TEST_F(CheckFailure, NextCheckOpensTheConnectionAgain)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    connexionString = kUnreachable;
    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    connexionString = tables.ConnexionString();

    EXPECT_EQ(Check(L""), rules::kVerdictSuccess) << "the signer of the first check is there";
    EXPECT_TRUE(trail.ran);
    EXPECT_TRUE(trail.problem.IsEmpty());
}

TEST_F(CheckFailure, AnyOtherExceptionWhileOpeningEndsTheCheck)
{
    constexpr std::size_t limit = std::size_t{2} << 20U;
    connexionString += std::string(limit, ' ');
    {
        const AllocationLimit noMemory(limit);
        EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    }
    ExpectNotRun("unknown");
    EXPECT_EQ(session.Get(), nullptr);
    EXPECT_TRUE(trace.Has("Exception|unknown"));
}

// Reading the rules.

TEST_F(CheckFailure, DatabaseErrorInTheRuleQueryGoesOnWithoutRulesAndWithoutFallback)
{
    bank.With(Contract(L"C1").AllHolders().WithoutRules());
    tables.Execute(L"DROP TABLE SSR_CONTRACTRULE");

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictNoRule);
    EXPECT_TRUE(trail.ran);
    EXPECT_FALSE(trail.rulesComplete);
    EXPECT_EQ(trace.Count(std::string("Exception|") + trail.problem.SafeGetString()), 1);
    ExpectEvent(1, L"CHECK SIGNATURES RULES NOT FOUND\r\n" + MessageLine(1805, L"Ana Ruiz"));
    EXPECT_EQ(RowCount(), 1U);
}

TEST_F(CheckFailure, DatabaseErrorInTheFallbackGoesOnWithoutRules)
{
    tables.Execute(L"DROP TABLE SSR_CONTRACT");

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictNoRule);
    EXPECT_FALSE(trail.rulesComplete);
    EXPECT_FALSE(trail.problem.IsEmpty());
    EXPECT_EQ(RowCount(), 1U);
}

TEST_F(CheckFailure, DatabaseErrorAfterARuleGoesOnWithTheRulesReadSoFar)
{
    if (!RunsOnSqlite())
    {
        GTEST_SKIP() << "needs a product that fails while it reads";
    }
    bank.With(Contract(L"C1").AloneBy(L"H1").UpTo(L"50.00").AloneBy(L"BAD").AloneBy(L"H1"));
    FailOnRead(tables, L"SSR_CONTRACTRULE", {L"CUID", L"HUID1", L"HUID2", L"ALONE", L"TLEVEL"},
               L"AMOUNT", L"HUID1='BAD'");
    connexionString += testing_support::kRowByRow;

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    EXPECT_TRUE(trail.ran);
    EXPECT_FALSE(trail.rulesComplete);
    EXPECT_FALSE(trail.problem.IsEmpty());
    EXPECT_EQ(RowCount(), 1U);
    EXPECT_EQ(journal.events.size(), 1U);
}

// The array grows from 128 rules to 256 in one allocation, the only one of this size.
TEST_F(CheckFailure, AnyOtherExceptionWhileReadingEndsTheCheck)
{
    Contract large(L"C1");
    for (int i = 0; i < 129; ++i)
    {
        large.AloneBy(L"H1");
    }
    bank.With(large);
    {
        const AllocationLimit noMemory(sizeof(cuidRule) * 200U);
        EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    }
    ExpectNotRun("unknown");
    EXPECT_TRUE(trace.Lines().ends_with("Exception|unknown\n"));
}

TEST_F(CheckFailure, MoreThan128RulesAreAllJudged)
{
    Contract large(L"C1");
    for (int i = 0; i < 129; ++i)
    {
        large.AloneBy(i == 128 ? L"H1" : L"H2");
    }
    bank.With(large);

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictSuccess);
}

// Looking holders up.

TEST_F(CheckFailure, LookUpThatFailedIsToldApartFromAHolderNotFound)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));

    EXPECT_EQ(Check(L"Nobody"), rules::kVerdictNoRule);
    EXPECT_TRUE(trail.lookupsComplete);
    EXPECT_TRUE(trail.problem.IsEmpty());

    tables.Execute(L"DROP TABLE SSR_HOLDERID");
    EXPECT_EQ(Check(L"Nobody"), rules::kVerdictNoRule);
    EXPECT_FALSE(trail.lookupsComplete);
    EXPECT_TRUE(trail.rulesComplete);
    EXPECT_FALSE(trail.problem.IsEmpty());
}

TEST_F(CheckFailure, OneFailedLookUpOfManyIsNotForgotten)
{
    bank.With(Holder(L"H'3").Certificate(L"Third"))
        .With(Contract(L"C1").AloneBy(L"H'3").AloneBy(L"H1"));

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictSuccess);
    EXPECT_FALSE(trail.lookupsComplete);
}

TEST_F(CheckFailure, LookUpsAreCompleteWhereTheRulesCouldNotBeRead)
{
    tables.Execute(L"DROP TABLE SSR_CONTRACT");

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictNoRule);
    EXPECT_FALSE(trail.rulesComplete);
    EXPECT_TRUE(trail.lookupsComplete) << "none was needed";
}

TEST_F(CheckFailure, QuoteInTheSignerListFailsTheLookUpAndLosesTheRow)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));

    EXPECT_EQ(Check(L"Pat O'Brien"), rules::kVerdictNoRule);
    EXPECT_TRUE(trail.ran);
    EXPECT_TRUE(trail.rulesComplete);
    EXPECT_FALSE(trail.problem.IsEmpty());
    EXPECT_EQ(trail.rowsDue, 1U);
    EXPECT_EQ(trail.rowsWritten, 0U);
    EXPECT_EQ(RowCount(), 0U);
    ExpectEvent(1, L"CHECK SIGNATURES RULES NOT FOUND\r\n" + MessageLine(1805, L"Pat O'Brien"));
}

// Writing the history.

TEST_F(CheckFailure, DatabaseErrorInTheFirstRowKeepsVerdictAndEvent)
{
    bank.With(Contract(L"C1").AloneBy(L"H1").UpTo(L"50.00").AloneBy(L"H1"));
    tables.Execute(L"DROP TABLE HST_SIGNRULES");

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    EXPECT_STREQ(reasonCode.SafeGetString(), "AM02");
    ASSERT_EQ(journal.events.size(), 1U);
    EXPECT_EQ(journal.events[0].level, 2);
    EXPECT_EQ(journal.events[0].text.rfind(L"CHECK SIGNATURES RULES FAILED\r\n", 0), 0U);
    EXPECT_TRUE(trail.ran);
    EXPECT_TRUE(trail.rulesComplete);
    EXPECT_EQ(trail.rowsDue, 2U);
    EXPECT_EQ(trail.rowsWritten, 0U);
    EXPECT_FALSE(trail.problem.IsEmpty());
    EXPECT_THAT(trace.Lines(), HasSubstr("\n***Exception|SignRules"));
    EXPECT_THAT(trace.Lines(), HasSubstr(trail.problem.SafeGetString()));
}

TEST_F(CheckFailure, RowsAfterAFailedOneAreNotWritten)
{
    const std::wstring quote = std::wstring(254, L'f') + L"'";
    bank.With(Holder(L"H3").Named(quote, L"Last").Certificate(L"Third"))
        .With(Contract(L"C1").Profile(2).By(L"H1", L"H2").By(L"H3", L"H2").By(L"H2", L"H1"));
    contract.veu = true;

    EXPECT_EQ(Check(L"Ana Ruiz;Bo Dahl;Third"), rules::kVerdictSuccess);
    EXPECT_EQ(trail.rowsDue, 3U);
    EXPECT_EQ(trail.rowsWritten, 1U);
    EXPECT_THAT(Column(L"SIGNER1"), ElementsAre(L"Ana Ruiz"));
    EXPECT_EQ(journal.events.size(), 1U);
}

TEST_F(CheckFailure, SecondConnectionThatCannotBeOpenedKeepsVerdictAndEvent)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    Check(L"Ana Ruiz");
    journal.events.clear();
    tables.Execute(L"DELETE FROM HST_SIGNRULES");
    connexionString = kUnreachable;

    EXPECT_EQ(Check(L""), rules::kVerdictSuccess) << "the session's own connection is open";
    ASSERT_EQ(journal.events.size(), 1U);
    EXPECT_EQ(journal.events[0].level, 0);
    EXPECT_EQ(RowCount(), 0U);
    EXPECT_EQ(trail.rowsDue, 1U);
    EXPECT_EQ(trail.rowsWritten, 0U);
    EXPECT_EQ(trail.problem.SafeGetString(), OpeningError(kUnreachable));
}

TEST_F(CheckFailure, HistoryErrorIsTracedWithItsNumber)
{
    tagODBCERROR error{};
    ODBC_PrepareStrucError(error, "SignRules");
    const std::string number =
        ODBC_FormatStrucError(error, 170393626, -1, "first", "second").SafeGetString();
    ASSERT_THAT(number, StartsWith("SignRules"));
    tables.Execute(L"DROP TABLE HST_SIGNRULES");

    Check(L"Ana Ruiz");
    const std::string head = number.substr(0, number.find("first"));
    EXPECT_THAT(trace.Lines(), HasSubstr("***Exception|" + head));
}

TEST_F(CheckFailure, AnyOtherExceptionInTheHistoryKeepsVerdictAndEvent)
{
    constexpr std::size_t limit = std::size_t{2} << 20U;
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    Check(L"Ana Ruiz");
    journal.events.clear();
    tables.Execute(L"DELETE FROM HST_SIGNRULES");
    connexionString += std::string(limit, ' ');
    {
        const AllocationLimit noMemory(limit);
        EXPECT_EQ(Check(L""), rules::kVerdictSuccess);
    }
    EXPECT_TRUE(trace.Has("***Exception|unknown"));
    EXPECT_STREQ(trail.problem.SafeGetString(), "unknown");
    EXPECT_EQ(journal.events.size(), 1U);
    EXPECT_EQ(RowCount(), 0U);
    EXPECT_EQ(trail.rowsWritten, 0U);
}

TEST_F(CheckFailure, FailedRowLeavesTheSessionsConnectionUsable)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    contract.veu = true;
    EXPECT_EQ(Check(L"O'"), rules::kVerdictNoRule);
    signers.RemoveAll();

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictSuccess);
    EXPECT_EQ(RowCount(), 1U);
}

} // namespace
