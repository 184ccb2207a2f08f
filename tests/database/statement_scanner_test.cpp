#include "database/dialect.h"
#include "database/statement_scanner.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace
{

using database::DialectOf;
using database::ScannedStatement;
using database::ScanStatement;

struct Rewriting
{
    const char* name;
    const wchar_t* statement;
    const wchar_t* sqlite;
};

void PrintTo(const Rewriting& each, std::ostream* stream)
{
    *stream << each.name;
}

const Rewriting kRewritings[] = {
    {"NationalLiteralLosesItsPrefix", L"WHERE CN = N'Ana'", L"WHERE CN = 'Ana'"},
    {"SmallPrefixToo", L"WHERE CN = n'Ana'", L"WHERE CN = 'Ana'"},
    {"LastLetterOfALiteralStays", L"VALUES (N'MARTIN','MARTIN')", L"VALUES ('MARTIN','MARTIN')"},
    {"LiteralThatLooksLikeAPrefixStays", L"VALUES ('N''N','aN')", L"VALUES ('N''N','aN')"},
    {"DoubledQuoteDoesNotEndALiteral", L"N'O''N''Brien {fn NOW()}'", L"'O''N''Brien {fn NOW()}'"},
    {"NameThatEndsWithNIsNoPrefix", L"SELECT xN'a', _N'a', \x00E9N'a', 1N'a', :N'a', @N'a'",
     L"SELECT xN'a', _N'a', \x00E9N'a', 1N'a', :N'a', @N'a'"},
    {"QuotedNameStays", L"SELECT \"N'a'\"\"N'b'\", N'c'", L"SELECT \"N'a'\"\"N'b'\", 'c'"},
    {"BacktickNameStays", L"SELECT `N'a'`, N'c'", L"SELECT `N'a'`, 'c'"},
    {"BracketNameStays", L"SELECT [N'a'], N'c'", L"SELECT [N'a'], 'c'"},
    {"LineCommentStays", L"SELECT -- N'a'\nN'b'", L"SELECT -- N'a'\n'b'"},
    {"BlockCommentStays", L"SELECT /* N'a' ' */N'b'", L"SELECT /* N'a' ' */'b'"},
    {"OpenBlockCommentStays", L"SELECT 1 /* N'a'", L"SELECT 1 /* N'a'"},
    {"MinusIsNoComment", L"SELECT 1 - N'1' / N'2'", L"SELECT 1 - '1' / '2'"},
    {"NeighbouringLiteralsStayApart", L"N'x'N'y'", L"'x' 'y'"},
    {"NowIsLocalTime", L"VALUES ({fn NOW()},1)", L"VALUES (datetime('now','localtime'),1)"},
    {"NowInAnyCaseAndSpacing", L"VALUES ({ Fn  now ( ) })",
     L"VALUES (datetime('now','localtime'))"},
    {"NowInALiteralStays", L"VALUES ('{fn NOW()}',N'{fn NOW()}')",
     L"VALUES ('{fn NOW()}','{fn NOW()}')"},
    {"NowInAQuotedNameStays", L"SELECT \"{fn NOW()}\"", L"SELECT \"{fn NOW()}\""},
    {"OtherFunctionStays", L"SELECT {fn USER()}", L"SELECT {fn USER()}"},
    {"CutFunctionStays", L"SELECT {fn NOW(", L"SELECT {fn NOW("},
    {"OpenLiteralStays", L"SELECT N'a''", L"SELECT 'a''"},
    {"PrefixAtTheEndStays", L"SELECT N", L"SELECT N"},
    {"EmptyLiteral", L"SELECT N''", L"SELECT ''"},
    {"LettersBeyondLatinStay", L"N'\x20AC \x0416'", L"'\x20AC \x0416'"},
    {"SemicolonAtTheEndStays", L"SELECT N'a' ; \r\n", L"SELECT 'a' ; \r\n"},
    {"EmptyTextStays", L"", L""},
};

class SqliteRewriting : public testing::TestWithParam<Rewriting>
{
};

TEST_P(SqliteRewriting, GivesTheProductsOwnForm)
{
    const ScannedStatement scanned =
        ScanStatement(GetParam().statement, DialectOf("SQLite").lexicon);

    EXPECT_EQ(scanned.text, GetParam().sqlite);
    EXPECT_TRUE(scanned.single);
}

TEST_P(SqliteRewriting, LeavesOtherProductsTheirText)
{
    for (const char* product : {"PostgreSQL", "Microsoft SQL Server", "Oracle"})
    {
        const ScannedStatement scanned =
            ScanStatement(GetParam().statement, DialectOf(product).lexicon);
        EXPECT_EQ(scanned.text, GetParam().statement) << product;
    }
}

INSTANTIATE_TEST_SUITE_P(Statements, SqliteRewriting, testing::ValuesIn(kRewritings),
                         [](const auto& each) { return std::string(each.param.name); });

// What is refused on the products: S SQLite, P PostgreSQL, M MariaDB and MySQL, T SQL Server,
// O any other.
struct Refusal
{
    const char* name;
    const wchar_t* statement;
    const char* refusedBy;
};

void PrintTo(const Refusal& each, std::ostream* stream)
{
    *stream << each.name;
}

constexpr const char* kAll = "SPMTO";
constexpr const char* kNone = "";

const Refusal kRefusals[] = {
    {"OneStatementPasses", L"SELECT 1", kNone},
    {"TrailingSemicolonPasses", L"SELECT 1;", kNone},
    {"TrailingSemicolonAndBlanksPass", L"SELECT 1; \t\r\n", kNone},
    {"EmptyTextPasses", L"", kNone},
    {"TwoStatements", L"SELECT 1; SELECT 2", kAll},
    {"TwoSemicolons", L"SELECT 1;;", kAll},
    {"CommentBehindTheSemicolon", L"SELECT 1; -- x", kAll},
    {"BlankThatIsNotAsciiBehindIt", L"SELECT 1;\x00A0", kAll},
    {"SemicolonInALiteralPasses", L"SELECT 'a;b', N'c;d'", kNone},
    {"SemicolonBehindADoubledQuotePasses", L"SELECT N'O''Brien;Smith'", kNone},
    {"SemicolonInAQuotedNamePasses", L"SELECT 1 AS \"a;b\"", kNone},
    {"QuoteOfACertificateEndsTheLiteral",
     L"SELECT CN WHERE LOWER(CN) = LOWER(N'x'); DROP TABLE SSR_HOLDER --')", kAll},
    {"OpenLiteralIsLeftToTheServer", L"SELECT 'a; DROP TABLE T", kNone},
    {"OpenQuotedNameIsLeftToTheServer", L"SELECT \"a; DROP TABLE T", kNone},
    {"BackslashHidesNoQuote", L"SELECT 'a\\'; DROP TABLE T -- '", kAll},
    {"BackslashInALiteralIsDoubtfulWhereItMayEscape", L"SELECT 'a\\b;c'", "O"},
    {"BackslashWithoutSemicolonPasses", L"SELECT 'a\\b'", kNone},
    {"BackslashThatMayHideTheEndOfALiteral", L"SELECT A FROM T WHERE B='\\' AND C=' OR 1=1 -- '",
     "O"},
    {"BackslashThatMayHideHalfOfADoubledQuote", L"SELECT A FROM T WHERE B='\\'' OR 1=1 -- '", "O"},
    {"ThreeBackslashesMayHideAQuote", L"SELECT 'a\\\\\\'", "O"},
    {"TwoBackslashesHideNone", L"SELECT 'a\\\\', 'b\\\\''c'", kNone},
    {"EscapeLiteralIsDoubtful", L"SELECT E'a\\'; DROP TABLE T --'", kAll},
    {"EscapeLiteralMayHideAQuote", L"SELECT E'\\', 'x;y'", "PO"},
    {"EscapeLiteralAlonePasses", L"SELECT E'a'", kNone},
    {"LineCommentIsKnownToSqliteOnly", L"SELECT 1 -- it's\n; DROP TABLE T -- '", kAll},
    {"SemicolonInALineComment", L"SELECT 1 -- a;b", "PMTO"},
    {"BlockCommentMayNest", L"SELECT 1 /* /* */ '*/; DROP TABLE T -- '", "PMTO"},
    {"BlockCommentThatHidesAQuote", L"SELECT 1 /* ' */; DROP TABLE T -- '", kAll},
    {"CommentThatIsRun", L"SELECT 1 /*! ; DROP TABLE T */", "PMTO"},
    {"HashCommentMayHideAQuote", L"SELECT 1 # '\n; DROP TABLE T -- '", "MO"},
    {"DollarQuoteMayHideAQuote", L"SELECT $$'$$; DROP TABLE T --'", "PTO"},
    {"TaggedDollarQuote", L"SELECT $a$'$a$; DROP TABLE T --'", "PTO"},
    {"BacktickHidesAQuoteWhereItQuotes", L"SELECT `'`; DROP TABLE T -- '", kAll},
    {"SemicolonInABacktickName", L"SELECT 1 AS `a;b`", "PTO"},
    {"BracketHidesAQuoteWhereItQuotes", L"SELECT ['] ; DROP TABLE T --'", "STO"},
    {"SemicolonInABracketName", L"SELECT 1 AS [a;b]", "PMO"},
    {"DoubledBracketStaysInsideTheName", L"SELECT [a]];b] FROM T", "SPMO"},
};

class StatementRefusal : public testing::TestWithParam<Refusal>
{
};

TEST_P(StatementRefusal, IsThatOfTheProduct)
{
    const std::pair<char, const char*> products[] = {
        {'S', "SQLite"}, {'P', "PostgreSQL"},           {'M', "MariaDB"},
        {'M', "MySQL"},  {'T', "Microsoft SQL Server"}, {'O', "Oracle"}};
    const std::string refusedBy = GetParam().refusedBy;
    for (const auto& [letter, product] : products)
    {
        const ScannedStatement scanned =
            ScanStatement(GetParam().statement, DialectOf(product).lexicon);
        EXPECT_EQ(scanned.single, refusedBy.find(letter) == std::string::npos) << product;
    }
}

INSTANTIATE_TEST_SUITE_P(Statements, StatementRefusal, testing::ValuesIn(kRefusals),
                         [](const auto& each) { return std::string(each.param.name); });

// SQL Server runs a second statement without a semicolon before it.
const Refusal kBareStatements[] = {
    {"RuleQueryPasses",
     L"SELECT C.CUID, C.PROFILE FROM SSR_CONTRACTCUR C, SSR_CONTRACTRULE R WHERE TYPE=1 AND C.CUID "
     L"IS NOT NULL AND C.CUID = R.CUID AND C.VPNAME='A;B' AND SERVER=1",
     kNone},
    {"HistoryRowPasses",
     L"INSERT INTO HST_SIGNRULES (DATETIME,TOTAL) VALUES ({fn NOW()},1000.000000)", kNone},
    {"InsertOfAQueryPasses", L"INSERT INTO T (A) SELECT A FROM U", kNone},
    {"SubqueryPasses", L"SELECT A FROM T WHERE A IN ( SELECT B FROM U)", kNone},
    {"UnionPasses", L"SELECT A FROM T UNION ALL SELECT B FROM U", kNone},
    {"UpdatePasses", L"UPDATE T SET A = 1 WHERE B = N'DROP TABLE T'", kNone},
    {"WordInAQuotedNamePasses", L"SELECT \"DROP\", [DELETE] FROM T", kNone},
    {"WordInsideANamePasses", L"SELECT DROPPED, X_DELETE, @DROP FROM T", kNone},
    {"DropBehindALiteral", L"SELECT A FROM T WHERE B = N'x'DROP TABLE T", "T"},
    {"DropInSmallLetters", L"SELECT A FROM T WHERE B = N'x' drop table T", "T"},
    {"DropBehindANumber", L"SELECT A FROM T WHERE B = 1DROP TABLE T", "T"},
    {"DropBehindAName", L"SELECT A FROM [T]DROP TABLE T", "T"},
    {"DropBehindABlankThatIsNotAscii",
     L"SELECT A FROM T\x00A0"
     L"DROP TABLE T",
     "T"},
    {"SecondSelect", L"SELECT 1 SELECT 2", "T"},
    {"SelectBehindTheValues", L"INSERT INTO T VALUES (1) SELECT 2", "T"},
    {"SecondSet", L"UPDATE T SET A = 1 SET NOCOUNT ON", "T"},
    {"SelectIntoATable", L"SELECT A INTO U FROM T", "T"},
    {"CommentInADataStatement", L"SELECT A FROM T -- x", "T"},
    {"OtherStatementsAreNotSearched", L"IF 1 = 1 CREATE TABLE T (A INT)", kNone},
};

INSTANTIATE_TEST_SUITE_P(BareStatements, StatementRefusal, testing::ValuesIn(kBareStatements),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(StatementScanner, GivesMariaDbPlainLiteralsAndItsOwnTime)
{
    for (const char* product : {"MariaDB", "MySQL"})
    {
        EXPECT_EQ(
            ScanStatement(L"VALUES ({fn NOW()},N'MARTIN','{fn NOW()}',\"N'a'\",`N'b'`,N'O''N')",
                          DialectOf(product).lexicon)
                .text,
            L"VALUES ({fn NOW()},'MARTIN','{fn NOW()}',\"N'a'\",`N'b'`,'O''N')")
            << product;
    }
}

TEST(StatementScanner, TellsWhetherASettingMayStayBehind)
{
    const auto plain = [](const wchar_t* statement)
    { return ScanStatement(statement, DialectOf("SQLite").lexicon).plainData; };

    EXPECT_TRUE(plain(L"SELECT 1"));
    EXPECT_TRUE(plain(L"  \n insert into T values (1)"));
    EXPECT_TRUE(plain(L"UPDATE T SET A = 1"));
    EXPECT_TRUE(plain(L"DELETE FROM T"));
    EXPECT_FALSE(plain(L"PRAGMA foreign_keys = ON"));
    EXPECT_FALSE(plain(L"BEGIN"));
    EXPECT_FALSE(plain(L"SELECTED"));
    EXPECT_FALSE(plain(L""));
}

TEST(DialectTable, IsKeyedByTheDriversNameOfTheProduct)
{
    EXPECT_EQ(DialectOf("SQLite").product, database::Product::Sqlite);
    EXPECT_EQ(DialectOf("sqlite3 3.40").product, database::Product::Sqlite);
    EXPECT_EQ(DialectOf("PostgreSQL").product, database::Product::PostgreSql);
    EXPECT_EQ(DialectOf("MariaDB").product, database::Product::MariaDb);
    EXPECT_EQ(DialectOf("MySQL").product, database::Product::MariaDb);
    EXPECT_EQ(DialectOf("Microsoft SQL Server").product, database::Product::SqlServer);
    EXPECT_EQ(DialectOf("Oracle").product, database::Product::Other);
    EXPECT_EQ(DialectOf("").product, database::Product::Other);
}

} // namespace
