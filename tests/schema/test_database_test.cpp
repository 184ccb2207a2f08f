#include "tests/testing/test_database.h"

#include "tests/testing/bank.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing_support::Bank;
using testing_support::Contract;
using testing_support::Holder;
using testing_support::Row;
using testing_support::TestDatabase;

TEST(TestDatabase, EveryOneStartsEmptyAndIsItsOwn)
{
    TestDatabase first;
    TestDatabase second;
    Bank(first).With(Holder(L"H1").Certificate(L"Ana Ruiz"));

    EXPECT_NE(first.ConnexionString(), second.ConnexionString());
    EXPECT_THAT(first.Query(L"SELECT HUID FROM SSR_HOLDER"), ElementsAre(Row{L"H1"}));
    EXPECT_THAT(second.Query(L"SELECT HUID FROM SSR_HOLDER"), ElementsAre());
}

TEST(TestDatabase, KeepsEveryLetterAndTellsNullFromEmpty)
{
    TestDatabase database;
    const std::wstring name = L"Jos\u00E9 O'Brien \u20AC \U0001F58A";
    database.Execute(L"INSERT INTO SSR_HOLDER (HUID, FNAME, LNAME, OPPOSITION) VALUES ('H', " +
                     database.Literal(name) + L", '', NULL)");

    EXPECT_THAT(database.Query(L"SELECT FNAME, LNAME, OPPOSITION FROM SSR_HOLDER"),
                ElementsAre(Row{name, L"", std::nullopt}));
}

TEST(TestDatabase, ReadsTextsLongerThanAnyBuffer)
{
    TestDatabase database;
    const std::wstring text(5000, L'\u00E9');
    database.Execute(L"INSERT INTO EVT_JOURNAL (EVENTKEY, DATETIME, LEVEL, TEXT) VALUES ('K', "
                     L"'2024-01-02 03:04:05', 0, " +
                     database.Literal(text) + L")");

    EXPECT_THAT(database.Query(L"SELECT DATETIME, TEXT FROM EVT_JOURNAL"),
                ElementsAre(Row{L"2024-01-02 03:04:05", text}));
}

TEST(Bank, WritesOneRowForEachContractSideAndRule)
{
    TestDatabase database;
    Bank(database)
        .With(Contract(L"C1")
                  .DoubleSignature()
                  .AloneBy(L"H1")
                  .UpTo(L"10.00")
                  .By(L"H1", L"H2")
                  .OrdersUpTo(L"20.00"))
        .With(Contract(L"C2").AllHolders().Opposition(L"1").WithoutRules());

    EXPECT_THAT(
        database.Query(L"SELECT CUID, VPNAME, VFNAME, VCNAME, PTC, SERVER, ALLHOLDERS, "
                       L"OPPOSITION FROM SSR_CONTRACT"),
        ElementsAre(Row{L"C1", L"PARTNER1", L"SERVICE1", L"CLIENT1", L"9", L"1", L"0", L"0"},
                    Row{L"C2", L"PARTNER1", L"SERVICE1", L"CLIENT1", L"9", L"1", L"1", L"1"}));
    EXPECT_THAT(database.Query(L"SELECT CUID, PROTOCOL, TYPE, PROFILE FROM SSR_CONTRACTCUR"),
                ElementsAre(Row{L"C1", L"9", L"1", L"1"}));
    EXPECT_THAT(
        database.Query(L"SELECT CUID, HUID1, HUID2, ALONE, AMOUNT, TLEVEL FROM SSR_CONTRACTRULE"),
        ElementsAre(Row{L"C1", L"H1", L"", L"1", L"10.00", L"0"},
                    Row{L"C1", L"H1", L"H2", L"0", L"20.00", L"1"}));
}
