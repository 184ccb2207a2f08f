#include "database/connection.h"
#include "tests/database/sqlite_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

using namespace database_tests;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

/// How the driver hands a value over: into a bound buffer, or asked for on its own.
enum class Reading
{
    Bound,
    OneByOne,
};

void Use(Reading reading, CDatabase& database)
{
    ASSERT_TRUE(database.GetConnection().BindsColumns());
    if (reading == Reading::OneByOne)
    {
        database.GetConnection().ReadValuesOneByOne();
    }
}

std::string NameOf(Reading reading)
{
    return reading == Reading::Bound ? "Bound" : "OneByOne";
}

// A letter beyond the first plane, two units of UTF-16.
const std::wstring kSmiley = sizeof(wchar_t) == 2 ? std::wstring{wchar_t(0xD83D), wchar_t(0xDE00)}
                                                  : std::wstring(1, static_cast<wchar_t>(0x1F600));

class RecordSet : public testing::TestWithParam<Reading>
{
protected:
    RecordSet()
    {
        Open(m_database, m_file.ConnexionString());
        Use(GetParam(), m_database);
        m_database.ExecuteSQLW(L"CREATE TABLE T (ID INTEGER, A NVARCHAR(20), B TEXT)");
    }

    void Insert(int id, const std::wstring& a, const std::wstring& b)
    {
        m_database.ExecuteSQLW(
            (L"INSERT INTO T VALUES (" + std::to_wstring(id) + L"," + a + L"," + b + L")").c_str());
    }

    SqliteFile m_file;
    CDatabase m_database;
};

constexpr database::ColumnLayout kColumns[] = {
    {"ID", database::ColumnKind::Narrow, 10},
    {"A", database::ColumnKind::Wide, 4},
    {"B", database::ColumnKind::Wide, 4},
};
constexpr database::RowLayout kLayout{kColumns, std::size(kColumns)};

TEST_P(RecordSet, ServesRowsInTheirOrder)
{
    Insert(1, L"N'x'", L"N'y'");
    Insert(2, L"N'z'", L"N''");

    EXPECT_THAT(ReadAll(m_database, L"SELECT ID FROM T ORDER BY ID", "ID"), ElementsAre("1", "2"));
    EXPECT_THAT(ReadAll(m_database, L"SELECT B FROM T ORDER BY ID", "B"), ElementsAre("y", ""));
}

TEST_P(RecordSet, OfAQueryWithoutRowsIsAtItsEnd)
{
    CRecordset rows(m_database);
    EXPECT_TRUE(rows.IsEOF());
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID FROM T", 0);
    EXPECT_TRUE(rows.IsEOF());
}

TEST_P(RecordSet, FindsColumnsWithoutRegardToCase)
{
    Insert(1, L"N'x'", L"N'y'");

    EXPECT_EQ(ReadOne(m_database, L"SELECT T.id, a AS Name FROM T", "ID"), "1");
    EXPECT_EQ(ReadOne(m_database, L"SELECT T.id, a AS Name FROM T", "nAmE"), "x");
}

TEST_P(RecordSet, ReadsNullAsEmptyText)
{
    Insert(1, L"NULL", L"N''");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT A, B FROM T", 0, nullptr);

    CTString narrow("before");
    rows.GetFieldValue("A", narrow);
    TSimpleStringW wide(L"before");
    rows.GetFieldValue("A", wide);
    EXPECT_STREQ(narrow.SafeGetString(), "");
    EXPECT_EQ(wide.GetLength(), 0U);
    EXPECT_TRUE(rows.IsFieldNull("A"));
    EXPECT_FALSE(rows.IsFieldNull("B"));
}

TEST_P(RecordSet, NullDoesNotKeepThePreviousRowsValue)
{
    Insert(1, L"N'first'", L"N'" + std::wstring(6000, L'y') + L"'");
    Insert(2, L"NULL", L"NULL");
    Insert(3, L"N'x'", L"N'z'");

    EXPECT_THAT(ReadAll(m_database, L"SELECT A FROM T ORDER BY ID", "A"),
                ElementsAre("first", "", "x"));
    EXPECT_THAT(ReadAll(m_database, L"SELECT B FROM T ORDER BY ID", "B"),
                ElementsAre(std::string(6000, 'y'), "", "z"));
}

TEST_P(RecordSet, ReadsNumbersAsText)
{
    EXPECT_EQ(ReadOne(m_database, L"SELECT 9223372036854775807 AS N", "N"), "9223372036854775807");
    EXPECT_EQ(ReadOne(m_database, L"SELECT -1.5 AS N", "N"), "-1.5");
}

TEST_P(RecordSet, BoundByALayoutIsReadTheSame)
{
    Insert(1, L"N'abcd'", L"N'abcde'");
    Insert(2, L"NULL", L"N'" + std::wstring(5000, L'\x20AC') + L"'");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T ORDER BY ID", 0, &kLayout);

    TSimpleStringW value;
    rows.GetFieldValue("a", value);
    EXPECT_STREQ(value.SafeGetString(), L"abcd"); // exactly its length
    rows.GetFieldValue("b", value);
    EXPECT_STREQ(value.SafeGetString(), L"abcde"); // one beyond it
    rows.MoveNext();
    EXPECT_TRUE(rows.IsFieldNull("A"));
    rows.GetFieldValue("B", value);
    EXPECT_EQ(std::wstring(value.SafeGetString()), std::wstring(5000, L'\x20AC'));
    rows.MoveNext();
    EXPECT_TRUE(rows.IsEOF());
}

TEST_P(RecordSet, TwoOfOneLayoutReadTheirOwnRowsAtOnce)
{
    Insert(1, L"N'x'", L"N'y'");
    Insert(2, L"N'z'", L"NULL");
    CRecordset outer(m_database);
    outer.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T ORDER BY ID", 0, &kLayout);
    CRecordset inner(m_database);
    inner.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T WHERE ID=2", 0, &kLayout);

    CTString value;
    inner.GetFieldValue("A", value);
    EXPECT_STREQ(value.SafeGetString(), "z");
    outer.GetFieldValue("A", value);
    EXPECT_STREQ(value.SafeGetString(), "x");
    inner.Close();
    outer.MoveNext();
    EXPECT_TRUE(outer.IsFieldNull("B"));
    outer.GetFieldValue("ID", value);
    EXPECT_STREQ(value.SafeGetString(), "2");
}

TEST_P(RecordSet, OfALayoutKeepsNothingOfTheQueryBefore)
{
    Insert(1, L"N'first'", L"N'" + std::wstring(6000, L'y') + L"'");
    Insert(2, L"N'x'", L"NULL");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T WHERE ID=1", 0, &kLayout);
    TSimpleStringW value;
    rows.GetFieldValue("B", value);
    EXPECT_EQ(value.GetLength(), 6000U);

    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T WHERE ID=2", 0, &kLayout);
    rows.GetFieldValue("A", value);
    EXPECT_STREQ(value.SafeGetString(), L"x");
    EXPECT_TRUE(rows.IsFieldNull("B"));
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T WHERE ID=3", 0, &kLayout);
    EXPECT_TRUE(rows.IsEOF());
}

TEST_P(RecordSet, OfALayoutRefusesAQueryOfFewerColumns)
{
    Insert(1, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    const auto failure = FailureOf(
        [&] { rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A FROM T", 0, &kLayout); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->state, "07009");
}

TEST_P(RecordSet, OfALayoutShowsNoColumnThatOnlyTheQueryBeforeHad)
{
    Insert(1, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T", 0, &kLayout);
    const auto failure = FailureOf(
        [&] { rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A FROM T", 0, &kLayout); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->state, "07009");
}

TEST_P(RecordSet, OfALayoutIsReadAfterTheTableHasChanged)
{
    Insert(1, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    const auto open = [&]
    { rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T", 0, &kLayout); };
    open();
    rows.Close();
    m_database.ExecuteSQLW(L"ALTER TABLE T ADD COLUMN C TEXT");
    m_database.ExecuteSQLW(L"UPDATE T SET B=N'z'");

    open();
    CTString value;
    rows.GetFieldValue("B", value);
    EXPECT_STREQ(value.SafeGetString(), "z");
}

TEST_P(RecordSet, OfALayoutIsReadAfterARollback)
{
    Insert(1, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    const auto read = [&]
    {
        rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T", 0, &kLayout);
        CTString value;
        rows.GetFieldValue("B", value);
        rows.Close();
        return std::string(value.SafeGetString());
    };
    m_database.BeginTransaction();
    m_database.ExecuteSQLW(L"UPDATE T SET B=N'z'");
    EXPECT_EQ(read(), "z");
    m_database.RollbackTransaction();

    EXPECT_EQ(read(), "y");
}

TEST_P(RecordSet, OfALayoutIsReadAfterAStatementThatFailed)
{
    Insert(1, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T", 0, &kLayout);
    EXPECT_TRUE(FailureOf(
        [&] { rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM U", 0, &kLayout); }));
    EXPECT_TRUE(FailureOf([&] { m_database.ExecuteSQLW(L"INSERT INTO U VALUES (1)"); }));

    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T", 0, &kLayout);
    TSimpleStringW value;
    rows.GetFieldValue("B", value);
    EXPECT_STREQ(value.SafeGetString(), L"y");
}

TEST_P(RecordSet, NamesColumnsByItsLayout)
{
    Insert(1, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT 7, 'p', 'q'", 0, &kLayout);

    CTString value;
    rows.GetFieldValue("B", value);
    EXPECT_STREQ(value.SafeGetString(), "q");
    EXPECT_EQ(rows.GetFieldCount(), 3U);
    EXPECT_STREQ(rows.GetFieldName(0), "ID");
}

TEST_P(RecordSet, ValuesByPositionAreThoseByName)
{
    const std::wstring texts[] = {L"",
                                  L"x",
                                  std::wstring(255, L'y'),
                                  std::wstring(256, L'y'),
                                  std::wstring(5000, L'y'),
                                  L"\u00E9\u20AC",
                                  std::wstring(254, L'y') + kSmiley,
                                  kSmiley + L"\u0410"};
    for (const std::wstring& text : texts)
    {
        Insert(1, L"NULL", L"N'" + text + L"'");
    }
    CRecordset rows(m_database);
    std::size_t read = 0;
    for (rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T", 0, &kLayout);
         !rows.IsEOF(); rows.MoveNext())
    {
        CTString narrow;
        TSimpleStringW wide;
        rows.GetFieldValue("B", narrow);
        rows.GetFieldValue("B", wide);
        EXPECT_STREQ(rows.NarrowText(2), narrow.SafeGetString());
        EXPECT_STREQ(rows.WideText(2), wide.SafeGetString());
        EXPECT_EQ(rows.WideText(2), texts[read++]);
        EXPECT_STREQ(rows.NarrowText(0), "1");
        EXPECT_STREQ(rows.NarrowText(1), "");
        EXPECT_STREQ(rows.WideText(1), L"");
    }
    EXPECT_EQ(read, std::size(texts));
}

TEST_P(RecordSet, ValuesByPositionAreRefusedWithoutARowAndWithoutAColumn)
{
    CRecordset rows(m_database);
    const auto stateOf = [&](std::size_t position)
    {
        const auto failure = FailureOf([&] { rows.NarrowText(position); });
        return failure ? failure->state : "";
    };
    EXPECT_EQ(stateOf(0), "24000");
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T", 0, &kLayout);
    EXPECT_EQ(stateOf(0), "24000");
    Insert(1, L"N'x'", L"N'y'");
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T", 0, &kLayout);
    EXPECT_EQ(stateOf(2), "");
    EXPECT_EQ(stateOf(3), "07009");
}

TEST_P(RecordSet, TellsNumberAndNamesOfTheColumns)
{
    CRecordset rows(m_database);
    EXPECT_EQ(rows.GetFieldCount(), 0U);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A AS Name FROM T", 0);

    ASSERT_EQ(rows.GetFieldCount(), 2U);
    EXPECT_STREQ(rows.GetFieldName(0), "ID");
    EXPECT_STREQ(rows.GetFieldName(1), "Name");
    const auto failure = FailureOf([&] { rows.GetFieldName(2); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->state, "07009");
}

// A length in characters; the text ends with marks that a cut or a gap would lose.
class LongValue : public testing::TestWithParam<std::tuple<std::size_t, Reading>>
{
};

TEST_P(LongValue, IsReadWhole)
{
    const SqliteFile file;
    CDatabase database;
    Open(database, file.ConnexionString());
    Use(std::get<Reading>(GetParam()), database);
    const std::size_t length = std::get<std::size_t>(GetParam());
    database.ExecuteSQLW(L"CREATE TABLE T (A TEXT, B TEXT)");
    std::wstring text;
    text.reserve(length);
    for (std::size_t index = 0; index + 1 < length; ++index)
    {
        text += static_cast<wchar_t>(L'a' + index % 23);
    }
    text += L'\x20AC';
    database.ExecuteSQLW((L"INSERT INTO T VALUES (N'" + text + L"', N'behind')").c_str());

    EXPECT_EQ(ReadOneWide(database, L"SELECT A, B FROM T", "A"), text);
    EXPECT_EQ(ReadOneWide(database, L"SELECT A, B FROM T", "B"), L"behind");
}

INSTANTIATE_TEST_SUITE_P(
    Lengths, LongValue,
    testing::Combine(testing::Values<std::size_t>(63, 64, 65, 511, 512, 513, 4159, 4160, 4161, 5000,
                                                  1048575, 1048576, 1048577, 2500000),
                     testing::Values(Reading::Bound, Reading::OneByOne)),
    [](const auto& each)
    {
        return std::to_string(std::get<std::size_t>(each.param)) + "Characters" +
               NameOf(std::get<Reading>(each.param));
    });

TEST_P(RecordSet, ReadsPairsWholeThatMeetTheEndOfAPiece)
{
    // Longer than the longest piece; the first letter moves the pairs against its end.
    constexpr std::size_t kPairs = 600000;
    for (const wchar_t* first : {L"", L"x"})
    {
        m_database.ExecuteSQLW(L"DELETE FROM T");
        m_database.ExecuteSQLW((std::wstring(L"INSERT INTO T (A) VALUES ('") + first +
                                L"' || replace(hex(zeroblob(" + std::to_wstring(kPairs) +
                                L")), '00', char(128512)))")
                                   .c_str());
        std::wstring expected = first;
        for (std::size_t index = 0; index < kPairs; ++index)
        {
            expected += kSmiley;
        }
        const std::wstring text = ReadOneWide(m_database, L"SELECT A FROM T", "A");
        EXPECT_TRUE(text == expected) << text.size();
    }
}

// Values round a buffer's end, where letters of one unit, of two units and of several bytes meet it
// at every place.
TEST_P(RecordSet, ValuesRoundTheEndOfTheirBufferAreWhole)
{
    const std::wstring letters[] = {L"a", L"\x00E9", L"\x20AC", kSmiley};
    std::vector<std::wstring> texts;
    for (const std::wstring& inner : letters)
    {
        for (const std::wstring& outer : letters)
        {
            for (std::size_t length = 0; length < 9; ++length)
            {
                std::wstring text = outer;
                for (std::size_t index = 0; index < length; ++index)
                {
                    text += inner;
                }
                texts.push_back(text);
            }
        }
    }
    m_database.BeginTransaction();
    for (std::size_t index = 0; index < texts.size(); ++index)
    {
        Insert(static_cast<int>(index), L"N'" + texts[index] + L"'", L"N'" + texts[index] + L"'");
    }
    m_database.CommitTransaction();
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T ORDER BY ID", 0, &kLayout);
    for (const std::wstring& text : texts)
    {
        TSimpleStringW value;
        rows.GetFieldValue("A", value);
        EXPECT_TRUE(value == text.c_str()) << text.size();
        rows.GetFieldValue("B", value);
        EXPECT_TRUE(value == text.c_str()) << text.size();
        rows.MoveNext();
    }
    EXPECT_TRUE(rows.IsEOF());
}

TEST_P(RecordSet, UnknownColumnRaises)
{
    Insert(1, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT A FROM T", 0);
    CTString value("before");

    const auto failure = FailureOf([&] { rows.GetFieldValue("HUID", value); });

    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->state, "42S22");
    EXPECT_EQ(failure->first, "[42S22] The query has no column HUID.");
    EXPECT_EQ(failure->second, "GetFieldValue: SELECT A FROM T");
    EXPECT_STREQ(value.SafeGetString(), "before");
}

TEST_P(RecordSet, ReadingWithoutARowRaises)
{
    CRecordset rows(m_database);
    CTString value;
    const auto closed = FailureOf([&] { rows.GetFieldValue("A", value); });
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT A FROM T", 0);
    const auto empty = FailureOf([&] { rows.GetFieldValue("A", value); });
    const auto beyond = FailureOf([&] { rows.MoveNext(); });

    ASSERT_TRUE(closed && empty && beyond);
    EXPECT_EQ(closed->first, "[24000] The record set is not open.");
    EXPECT_EQ(empty->first, "[24000] There is no current row.");
    EXPECT_EQ(beyond->first, "[24000] There is no row behind the last one.");
}

TEST_P(RecordSet, AStatementWithoutRowsRaises)
{
    CRecordset rows(m_database);
    const auto failure = FailureOf(
        [&] { rows.OpenW(CRecordset::kForwardOnly, L"INSERT INTO T (ID) VALUES (5)", 0); });

    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->state, "07005");
    EXPECT_TRUE(rows.IsEOF());
}

TEST_P(RecordSet, IsOpenedAgainAfterCloseAndWithoutIt)
{
    Insert(1, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    CTString value;
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT A FROM T", 0);
    rows.Close();
    EXPECT_TRUE(rows.IsEOF());
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT B FROM T", 0);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID FROM T", 0);
    rows.GetFieldValue("ID", value);
    EXPECT_STREQ(value.SafeGetString(), "1");
    rows.Close();
    rows.Close();
}

TEST_P(RecordSet, FailedOpenLeavesItClosed)
{
    Insert(1, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT A FROM T", 0);
    EXPECT_TRUE(FailureOf([&] { rows.OpenW(CRecordset::kForwardOnly, L"SELECT", 0); }));
    EXPECT_TRUE(rows.IsEOF());
    EXPECT_EQ(rows.GetFieldCount(), 0U);
}

TEST_P(RecordSet, TwoReadSideBySideOnOneConnection)
{
    Insert(1, L"N'x'", L"N'y'");
    Insert(2, L"N'z'", L"N'w'");
    CRecordset outer(m_database);
    outer.OpenW(CRecordset::kForwardOnly, L"SELECT ID FROM T ORDER BY ID", 0);
    EXPECT_EQ(ReadOne(m_database, L"SELECT B FROM T WHERE ID=2", "B"), "w");
    outer.MoveNext();
    CTString value;
    outer.GetFieldValue("ID", value);
    EXPECT_STREQ(value.SafeGetString(), "2");
}

TEST_P(RecordSet, ClosedKeepsNoWriterOut)
{
    Insert(1, L"N'x'", L"N'y'");
    Insert(2, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID FROM T", 0); // one of two rows read
    rows.Close();

    CDatabase writer;
    Open(writer, m_file.ConnexionString() + ";Timeout=1");
    EXPECT_FALSE(FailureOf([&] { writer.ExecuteSQLW(L"DROP TABLE T"); }));
}

TEST_P(RecordSet, OfALayoutKeepsNoWriterOutOnceClosed)
{
    Insert(1, L"N'x'", L"N'y'");
    Insert(2, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T", 0, &kLayout); // one of two rows
    rows.Close();

    CDatabase writer;
    Open(writer, m_file.ConnexionString() + ";Timeout=1");
    EXPECT_FALSE(FailureOf([&] { writer.ExecuteSQLW(L"DROP TABLE T"); }));
}

TEST_P(RecordSet, OfALayoutOutlivesTheDatabaseAndItsNextOne)
{
    Insert(1, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT ID, A, B FROM T", 0, &kLayout);
    m_database.Close();
    Open(m_database, m_file.ConnexionString());
    CRecordset next(m_database);
    next.OpenW(CRecordset::kForwardOnly, L"SELECT 2 AS ID, 'p' AS A, 'q' AS B", 0, &kLayout);

    CTString value;
    rows.GetFieldValue("B", value);
    EXPECT_STREQ(value.SafeGetString(), "y");
    next.GetFieldValue("B", value);
    EXPECT_STREQ(value.SafeGetString(), "q");
}

TEST_P(RecordSet, ThatOutlivesTheDatabaseKeepsItsRows)
{
    Insert(1, L"N'x'", L"N'y'");
    CRecordset rows(m_database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT A FROM T", 0);
    m_database.Close();
    CTString value;
    rows.GetFieldValue("A", value);
    EXPECT_STREQ(value.SafeGetString(), "x");
}

TEST_P(RecordSet, OnAClosedDatabaseRaises)
{
    m_database.Close();
    CRecordset rows(m_database);
    const auto failure =
        FailureOf([&] { rows.OpenW(CRecordset::kForwardOnly, L"SELECT A FROM T", 0); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->state, "08003");
    EXPECT_THAT(failure->first, HasSubstr("not open"));
}

INSTANTIATE_TEST_SUITE_P(Readings, RecordSet, testing::Values(Reading::Bound, Reading::OneByOne),
                         [](const auto& each) { return NameOf(each.param); });

} // namespace
