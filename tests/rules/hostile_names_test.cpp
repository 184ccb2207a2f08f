// What certificate names and file names can do that enter statements as they stand, on the product
// that SIGNUTILS_TEST_DB names, SQLite without it. docs/security.md tells the same in words.

#include "database/dialect.h"
#include "tests/rules/check_fixture.h"

#include <algorithm>
#include <cstring>

namespace
{

using database::Product;
using testing::HasSubstr;
using testing_support::Contract;
using testing_support::Holder;
using testing_support::Row;

// The longest common name of an X.509 certificate. Not every authority keeps to it, and the library
// does not rely on it.
constexpr std::size_t kLongestCommonName = 64;

class HostileName : public testing_support::CheckTest
{
protected:
    Product ProductHere() const
    {
        CDatabase database;
        database.OpenEx(tables.ConnexionString().c_str(), 0);
        return database.GetDialect().product;
    }

    /// Every row of every table but the history, which a check writes.
    std::vector<std::vector<Row>> BankRows()
    {
        std::vector<std::vector<Row>> all;
        for (const wchar_t* query :
             {L"SELECT * FROM SSR_HOLDER ORDER BY HUID",
              L"SELECT * FROM SSR_HOLDERID ORDER BY HUID",
              L"SELECT * FROM SSR_CONTRACT ORDER BY CUID",
              L"SELECT * FROM SSR_CONTRACTCUR ORDER BY CUID",
              L"SELECT * FROM SSR_CONTRACTRULE ORDER BY CUID",
              L"SELECT VERSION, NAME FROM SSR_VERSION", L"SELECT * FROM EVT_JOURNAL"})
        {
            all.push_back(tables.Query(query));
        }
        return all;
    }

    /// A check as that of a session of its own: else the signers of the one before count too.
    std::uint32_t CheckAfresh(const std::wstring& list)
    {
        signers.RemoveAll();
        trail = {};
        return Check(list.c_str());
    }

    /// The signers judge nothing but what is theirs, and leave the bank as it was.
    void ExpectNoGain(const std::wstring& list)
    {
        const auto before = BankRows();
        const std::uint32_t verdict = Check(list.c_str());

        EXPECT_NE(verdict, rules::kVerdictSuccess);
        EXPECT_EQ(BankRows(), before);
        EXPECT_LE(RowCount(), 1U);
        for (const std::wstring& status : Column(L"STATUT"))
        {
            EXPECT_EQ(status, std::to_wstring(verdict));
        }
    }

    /// A literal with a backslash, over a connection that takes backslashes for escapes.
    void WriteBackslashesAsTheyAre()
    {
        if (ProductHere() == Product::MariaDb)
        {
            tables.Execute(L"SET SESSION sql_mode = 'NO_BACKSLASH_ESCAPES'");
        }
    }
};

// Whatever a name would be if its apostrophe ended the literal.
constexpr const wchar_t* kForged[] = {
    L"O'Brien",
    L"'",
    L"' OR '1'='1",
    L"x') OR ('1'='1",
    L"x') OR 1=1--",
    L"x') OR 1=1-- ",
    L"x') OR 1=1#",
    L"x') OR 1=1/*",
    L"x')/**/OR/**/1=1--",
    L"x') OR H.HUID='H1'--",
    L"') UNION SELECT HUID,'',FNAME,LNAME,'0',CN,'','' FROM A--",
    L"') UNION SELECT 'h','p','F','L','0','Ana Ruiz','1','1'--",
    L"x') UNION ALL SELECT * FROM SSR_HOLDER--",
    L"x')) DELETE FROM SSR_HOLDER--",
    L"x')\x3B DROP TABLE SSR_HOLDER--",
    L"x')\x3B UPDATE SSR_HOLDER SET OPPOSITION='0'--",
    L"x')||(SELECT 1/0)||('",
    L"'||pg_sleep(9)||'",
    L"' AND SLEEP(9)='",
    L"'||randomblob(999999999)||'",
    L"'||load_extension('x')||'",
    L"x' INTO OUTFILE '/tmp/signutils-forged",
    L"x\\') OR 1=1-- ",
    L"\\'",
    L"x\\\\') OR 1=1-- ",
    L"x'E'\\'') OR 1=1--",
    L"x'$$') OR 1=1--$$",
    L"x'' OR 'y",
    L"x''') OR 1=1--",
    L"\x7E17') OR 1=1-- ", // its GBK ends with a backslash
    L"\x8868') OR 1=1-- ", // its Shift JIS does
    L"\x529F') OR 1=1-- ", // its Big5 does
    L"\x00BF') OR 1=1-- ", // with the quote one letter of GBK, read byte by byte
    // Names that a query would give back as certificate name, so that the comparison finds them.
    L"') UNION SELECT 1,1,1,1,0,substr(current_query(),99,64),1,1--",
    L"') UNION SELECT 1,1,1,1,0,INFO,1,1 FROM information_schema.PROCESSLIST-- ",
    L"') UNION SELECT 1,1,1,1,0,replace(x,'@',x),1,1 FROM(SELECT'@'x)--",
    L"') UNION SELECT'h','p','F','L','0',(SELECT sql FROM t),'','1'--",
};

class Forged : public HostileName, public testing::WithParamInterface<const wchar_t*>
{
};

TEST_P(Forged, SignerAloneSignsForNobody)
{
    bank.With(Contract(L"C1").DoubleSignature().By(L"H1", L"H2").AloneBy(L"H1"));
    ExpectNoGain(GetParam());

    EXPECT_FALSE(trail.lookupsComplete);
    EXPECT_THAT(trail.problem.SafeGetString(),
                HasSubstr("The certificate name has an apostrophe without a partner"));
}

TEST_P(Forged, SignerBesideAHonestOneBringsNoSecondSignature)
{
    bank.With(Contract(L"C1").DoubleSignature().By(L"H1", L"H2"));
    ExpectNoGain(L"Ana Ruiz;" + std::wstring(GetParam()));
}

TEST_P(Forged, SignerIsRecordedUnderNobodysName)
{
    bank.With(Contract(L"C1").AllHolders().WithoutRules());
    const auto before = BankRows();

    EXPECT_EQ(Check(GetParam()), rules::kVerdictSuccess) << "any signer is allowed";
    EXPECT_EQ(BankRows(), before);
    EXPECT_EQ(RowCount(), 0U);
    EXPECT_EQ(journal.events.size(), 1U) << "the event tells what the lost row would have";
}

TEST_P(Forged, FileNameWritesNoRow)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    const std::wstring wide = GetParam();
    file.clear();
    for (const wchar_t letter : wide)
    {
        file += letter < 0x100 ? static_cast<char>(letter) : '?';
    }
    const auto before = BankRows();

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictSuccess) << "a name decides nothing";
    EXPECT_EQ(BankRows(), before);
    EXPECT_EQ(RowCount(), 0U);
    EXPECT_EQ(trail.rowsDue, 1U);
    EXPECT_THAT(trail.problem.SafeGetString(), HasSubstr("The file name, cut to 256 characters,"));
}

INSTANTIATE_TEST_SUITE_P(Texts, Forged, testing::ValuesIn(kForged));

TEST(ForgedTexts, FitIntoACommonNameOfACertificateNearlyAll)
{
    const auto fitting = std::count_if(
        std::begin(kForged), std::end(kForged),
        [](const wchar_t* each) { return std::wstring_view(each).size() <= kLongestCommonName; });

    EXPECT_GE(fitting, 30) << "the limit of 64 characters keeps nobody from forging";
}

// Names that look like something else to a driver, a formatter or a code page, and are plain data.
constexpr const wchar_t* kOdd[] = {
    L"Ana\\",
    L"Ana\\\\",
    L"\\n\\0\\x27",
    L"C:\\Users\\Ana",
    L"{fn NOW()}",
    L"{d x}",
    L"{",
    L"}",
    L"{fn",
    L"Who?",
    L"? ? ?",
    L":name",
    L"$1",
    L"$$",
    L"$a$",
    L"@@version",
    L"%s%n%d%",
    L"100%",
    L"_",
    L"--",
    L"-- Ana",
    L"/* Ana */",
    L"/*! Ana */",
    L"*/",
    L"#Ana",
    L"`Ana`",
    L"[Ana]",
    L"\"Ana\"",
    L"E",
    L"N",
    L"x E",
    L"NULL",
    L"DROP TABLE SSR_HOLDER",
    L") OR 1=1",
    L"\x02BC) OR 1=1--", // letters that look like an apostrophe
    L"\x2019) OR 1=1--",
    L"\xFF07) OR 1=1--",
    L"\x2032) OR 1=1--",
    L"\x7E17", // a backslash ends their GBK, Shift JIS and Big5
    L"\x8868\x30BD",
    L"\x529F",
    L"\x00BF\x00A7",
    L"\x00E9lodie \x0416",
    L"a\tb",
};

class Odd : public HostileName, public testing::WithParamInterface<const wchar_t*>
{
};

TEST_P(Odd, CertificateNameIsData)
{
    WriteBackslashesAsTheyAre();
    const std::wstring name = GetParam();
    bank.With(Holder(L"H9").Named(L"Odd", L"Name").Certificate(name))
        .With(Contract(L"C1").AloneBy(L"H9"));

    EXPECT_EQ(Check(name.c_str()), rules::kVerdictSuccess) << trail.problem.SafeGetString();
    EXPECT_TRUE(trail.lookupsComplete);
    EXPECT_EQ(Column(L"CNS"), std::vector<std::wstring>{Stored(name)});
    EXPECT_EQ(Column(L"SIGNER1"), std::vector<std::wstring>{L"Odd Name"});
}

TEST_P(Odd, CertificateNameOfNobodyIsNobodys)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    ExpectNoGain(GetParam());

    EXPECT_TRUE(trail.lookupsComplete) << trail.problem.SafeGetString();
}

INSTANTIATE_TEST_SUITE_P(Texts, Odd, testing::ValuesIn(kOdd));

TEST_F(HostileName, NarrowTextsThatEndWithABackslashAreData)
{
    WriteBackslashesAsTheyAre();
    auto other = Contract(L"C1").AloneBy(L"H1");
    other.vpname = L"P\\";
    other.vfname = L"S\\";
    other.vcname = L"C\\";
    bank.With(other);
    contract.partner = "P\\";
    contract.service = "S\\";
    contract.client = "C\\";
    file = "order\\";
    orderId = "O\\";

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictSuccess) << trail.problem.SafeGetString();
    EXPECT_EQ(Column(L"FILENAME"), std::vector<std::wstring>{L"order\\"});
    EXPECT_EQ(Column(L"ORDERID"), std::vector<std::wstring>{L"O\\"});
    EXPECT_EQ(Column(L"VCNAME"), std::vector<std::wstring>{L"C\\"});
}

TEST_F(HostileName, NamesOfEveryLengthAreComparedWhole)
{
    for (const std::size_t length : {kLongestCommonName, kLongestCommonName + 1, std::size_t{255}})
    {
        const std::wstring huid = L"H" + std::to_wstring(length);
        const std::wstring name(length, L'n');
        bank.With(Holder(huid).Certificate(name));
        bank.With(Contract(L"C" + std::to_wstring(length)).AloneBy(huid));
        EXPECT_EQ(CheckAfresh(name), rules::kVerdictSuccess) << length;
        tables.Execute(L"DELETE FROM SSR_CONTRACTCUR");
        tables.Execute(L"DELETE FROM SSR_CONTRACTRULE");
    }
    bank.With(Contract(L"C9").AloneBy(L"H255"));
    EXPECT_NE(CheckAfresh(std::wstring(255, L'n') + L"x"), rules::kVerdictSuccess)
        << "a longer name is another one, whatever its beginning";
}

// A driver may take whatever follows half a character for the other half: an apostrophe that ends a
// literal would be gone, and the next name be read as statement.
TEST_F(HostileName, HalfACharacterDoesNotHideTheEndOfItsLiteral)
{
    bank.With(Holder(L"H9").Named(L"Eve", L"Other").Certificate(L"Eve"))
        .With(Contract(L"C1").DoubleSignature().AloneBy(L"H1"));
    contract.veu = true; // so that it is no matter how many signers there are
    for (const wchar_t half : {wchar_t(0xD800), wchar_t(0xDBFF), wchar_t(0xDC00)})
    {
        signers.RemoveAll();
        tables.Execute(L"DELETE FROM HST_SIGNRULES");
        ExpectNoGain(L"Eve;x" + std::wstring(1, half) + L";)) OR H.HUID=I.HUID-- x");
        EXPECT_TRUE(trail.lookupsComplete) << trail.problem.SafeGetString();
    }
}

// Look-alikes that a product's comparison might take for equal.
TEST_F(HostileName, NamesThatOnlyResembleAHoldersAreOthers)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    for (const wchar_t* name :
         {L"\x00C1na Ruiz", L"An\x0430 Ruiz", L"Ana\x00A0Ruiz", L"Ana\x200BRuiz", L"\xFF21na Ruiz",
          L"Ana  Ruiz", L"Ana Ruiz\x0301", L"Ana Rui\x017E"})
    {
        EXPECT_NE(CheckAfresh(name), rules::kVerdictSuccess) << testing::PrintToString(name);
    }
}

// Two apostrophes stand for one in a literal. The comparison in memory is exact, the record of
// "any signer is allowed" is not compared.
TEST_F(HostileName, TwoApostrophesDoNotSignForTheHolderWithOne)
{
    bank.With(Holder(L"H3").Named(L"Pat", L"O'Brien").Certificate(L"Pat O'Brien"))
        .With(Contract(L"C1").AloneBy(L"H3"));

    EXPECT_NE(Check(L"Pat O''Brien"), rules::kVerdictSuccess);
}

TEST_F(HostileName, TwoApostrophesAreRecordedUnderTheHolderWithOneWhereAnySignerIsAllowed)
{
    bank.With(Holder(L"H3").Named(L"Pat", L"O'Brien").Certificate(L"Pat O'Brien"))
        .With(Contract(L"C1").AllHolders().WithoutRules());

    EXPECT_EQ(Check(L"Pat O''Brien"), rules::kVerdictSuccess);
    EXPECT_EQ(Column(L"SIGNER1"), std::vector<std::wstring>{L"Pat O'Brien"});
    EXPECT_EQ(Column(L"CNS"), std::vector<std::wstring>{L"Pat O'Brien"});
}

// Blanks round a name belong to the list, so a certificate named with them is the one without.
TEST_F(HostileName, BlanksRoundANameDoNotMakeAnother)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));

    EXPECT_EQ(Check(L" Ana Ruiz\t"), rules::kVerdictSuccess);
}

// The list is one text: the host must not put a name with a semicolon into it.
TEST_F(HostileName, ASemicolonInOneNameMakesTwoSignersOfIt)
{
    bank.With(Contract(L"C1").DoubleSignature().By(L"H1", L"H2"));
    const std::wstring oneCertificate = L"Ana Ruiz;Bo Dahl";

    EXPECT_EQ(Check(oneCertificate.c_str()), rules::kVerdictSuccess);
}

TEST_F(HostileName, CodePagesWhoseLettersEndWithABackslashLetNothingOut)
{
    if (ProductHere() != Product::MariaDb)
    {
        GTEST_SKIP() << "only MariaDB's driver takes a code page for the connection";
    }
    WriteBackslashesAsTheyAre();
    struct CodePage
    {
        const char* name;
        const wchar_t* letter;
    };
    const std::string plain = connexionString;
    for (const CodePage& page : {CodePage{"gbk", L"\x7E17"}, CodePage{"sjis", L"\x8868"},
                                 CodePage{"big5", L"\x529F"}, CodePage{"utf8mb4", L"\x8868"}})
    {
        tables.Execute(L"DELETE FROM SSR_HOLDERID");
        tables.Execute(L"DELETE FROM SSR_CONTRACT");
        tables.Execute(L"DELETE FROM SSR_CONTRACTCUR");
        tables.Execute(L"DELETE FROM SSR_CONTRACTRULE");
        const std::wstring huid(page.name, page.name + std::strlen(page.name));
        bank.With(Holder(huid).Certificate(page.letter)).With(Contract(L"C1").AloneBy(huid));
        connexionString = plain + ";CHARSET=" + page.name;
        session = SharedRef<CDatabase>();

        EXPECT_EQ(CheckAfresh(page.letter), rules::kVerdictSuccess)
            << page.name << ": " << trail.problem.SafeGetString();
        EXPECT_NE(CheckAfresh(std::wstring(page.letter) + L"') OR 1=1-- "), rules::kVerdictSuccess);
        EXPECT_FALSE(trail.lookupsComplete);
    }
}

} // namespace
