// signcheck rules import-holders: holders of a CSV file, and the lines that are none.

#include "tests/host/rulebook/rule_file_run.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kHeading =
    "huid;partner;first-name;last-name;opposition;certificate;serial;expires\n";

class RulesImportHolders : public RuleFileTest
{
protected:
    Answer Import(const std::string& csv, const std::vector<std::string>& more = {})
    {
        std::vector<std::string> arguments = {"rules", "import-holders",
                                              m_folder.Write("holders.csv", csv), "--db", Db()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }

    std::vector<std::string> WithRejects() const { return {"--rejects", m_rejects}; }

    // The reason why a line below the heading is rejected; nothing may be imported then.
    std::string ReasonOf(const std::string& line)
    {
        const std::string before = Exported();
        const Answer answer = Import(kHeading + line + "\n");
        EXPECT_EQ(answer.status, 1) << answer.errors;
        EXPECT_EQ(Exported(), before);
        return answer.errors;
    }

    std::string m_rejects = m_folder.Path("rejects.csv");
};

TEST_F(RulesImportHolders, HoldersComeWithTheirCertificates)
{
    const Answer answer = Import(std::string(kHeading) +
                                 "N-1;DUPONTSA;Anaïs;D'Aubigné;0;Anaïs Daubigné;77;2028-01-31\n"
                                 "N-2;;;Société Générale d'Essais;;;;\n"
                                 "N-1;DUPONTSA;Anaïs;D'Aubigné;0;Trésorerie;78;\n");

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output,
                HasSubstr("holders.csv: 3 lines; 2 holders added, 0 holders with new "
                          "certificates, 0 lines rejected."));
    EXPECT_THAT(Exported(), HasSubstr(R"(
[[holder]]
huid = "N-1"
partner = "DUPONTSA"
first-name = "Anaïs"
last-name = "D'Aubigné"
opposition = "0"
certificates = [
  { name = "Anaïs Daubigné", serial = "77", expires = 2028-01-31 },
  { name = "Trésorerie", serial = "78" },
]
)"));
    EXPECT_THAT(Exported(), HasSubstr("[[holder]]\nhuid = \"N-2\"\nlast-name = \"Société "
                                      "Générale d'Essais\"\n\n"));
}

TEST_F(RulesImportHolders, AHolderWhoIsThereGainsACertificate)
{
    const Answer answer = Import("certificate,huid,partner,first-name,last-name,opposition\r\n"
                                 "\"Lefèvre, Élodie\",FR-0001,DUPONTSA,Élodie,Lefèvre,0\r\n");

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, HasSubstr("0 holders added, 1 holder with new certificates"));
    EXPECT_THAT(m_database.Query(L"SELECT CN FROM SSR_HOLDERID WHERE HUID = 'FR-0001'"),
                ElementsAre(Row{L"Élodie Lefèvre"}, Row{L"Lefèvre, Élodie"}));
}

TEST_F(RulesImportHolders, WithoutAFileForThemOneRejectedLineRejectsAll)
{
    const std::string before = Exported();

    const Answer answer = Import(std::string(kHeading) + "N-1;;;A;;A;;\nN-2;NINECHARS;;B;;B;;\n");

    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.output, "");
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("holders.csv, line 3: partner: 'NINECHARS' has 9 characters"),
                      HasSubstr("give --rejects FILE"), HasSubstr("Nothing was imported")));
    EXPECT_EQ(Exported(), before);
}

TEST_F(RulesImportHolders, RejectedLinesAreKeptWithTheirReasonsAndTheOthersImported)
{
    const Answer answer =
        Import(std::string(kHeading) + "N-1;;;A;;A;;\nN-2;NINECHARS;;\"B;b\";;B;;\n\"N-3;x\n",
               WithRejects());

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output, HasSubstr("1 holder added"));
    EXPECT_EQ(ReadWholeFile(m_rejects),
              std::string(kHeading) +
                  "# rejected, line 3: partner: 'NINECHARS' has 9 characters and column VPNAME "
                  "takes 8. Shorten it.\nN-2;NINECHARS;;\"B;b\";;B;;\n"
                  "# rejected, line 4: A double quote is not closed.\n\"N-3;x\n");
}

TEST_F(RulesImportHolders, MendedRejectsAreImported)
{
    Import(std::string(kHeading) + "N-2;NINECHARS;;B;;B;;\n", WithRejects());
    const std::string mended = Replaced(ReadWholeFile(m_rejects), "N-2;NINECHARS", "N-2;NINE");

    const Answer answer = Import(mended);

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, HasSubstr("1 line; 1 holder added"));
}

TEST_F(RulesImportHolders, OneRejectedLineRejectsAllOfItsHolder)
{
    Import(std::string(kHeading) + "N-1;;;A;;A;;\nN-1;;;A;;B;;2027-02-30\nN-2;;;C;;C;;\n",
           WithRejects());

    EXPECT_EQ(m_database.Query(L"SELECT HUID FROM SSR_HOLDER WHERE HUID = 'N-1'").size(), 0U);
    EXPECT_EQ(m_database.Query(L"SELECT HUID FROM SSR_HOLDER WHERE HUID = 'N-2'").size(), 1U);
    EXPECT_THAT(ReadWholeFile(m_rejects),
                AllOf(HasSubstr("line 2: Line 3 of the same holder is rejected.\nN-1;;;A;;A;;\n"),
                      HasSubstr("line 3: certificate.expires: '2027-02-30' is no date.")));
}

TEST_F(RulesImportHolders, HeadingsInCapitalsAreTheSameColumns)
{
    const Answer answer = Import("\"HUID\";Last-Name;CERTIFICATE\nN-1;A;B\n");

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(Exported(), HasSubstr("huid = \"N-1\"\nlast-name = \"A\"\n"));
}

TEST_F(RulesImportHolders, AColumnInTwoLetterCasesStandsThereTwice)
{
    EXPECT_THAT(Import("huid;last-name;LAST-NAME\nN-1;A;B\n").errors,
                AllOf(HasSubstr("holders.csv, line 1: the column 'last-name' stands there twice"),
                      HasSubstr("Nothing was imported")));
}

TEST_F(RulesImportHolders, AHeadingInAnotherEncodingIsToldWithWhatToDo)
{
    const std::string before = Exported();

    EXPECT_THAT(Import("huid;pr\xE9nom\nN-1;A\n").errors,
                HasSubstr("holders.csv, line 1: The line is no UTF-8 text. Save the file as UTF-8 "
                          "(\"CSV UTF-8\" in a spreadsheet). Nothing was imported."));
    for (const std::string& start : {std::string("\xFF\xFEh\0u\0", 6), std::string("h\0u\0", 4),
                                     std::string("\xFE\xFF\0h\0u", 6)})
    {
        const Answer answer = Import(start);
        EXPECT_EQ(answer.status, 1);
        EXPECT_THAT(answer.errors, HasSubstr("holders.csv, line 1: the file is UTF-16 text. Save "
                                             "it as UTF-8"));
    }
    EXPECT_EQ(Exported(), before);
}

TEST_F(RulesImportHolders, AHeadingThatCannotBeTakenApartIsToldAsThat)
{
    EXPECT_THAT(Import("\"huid;last-name\nN-1;A\n").errors,
                HasSubstr("line 1: A double quote is not closed. Nothing was imported."));
}

TEST_F(RulesImportHolders, ALineInAnotherEncodingIsToldWithWhatToDo)
{
    EXPECT_THAT(ReasonOf("N-1;;;\xE9;;A;;"),
                HasSubstr("line 2: The line is no UTF-8 text. Save the file as UTF-8"));
}

TEST_F(RulesImportHolders, LinesThatCannotBeImported)
{
    EXPECT_THAT(ReasonOf(";;;A;;A;;"), HasSubstr("The huid is empty"));
    EXPECT_THAT(ReasonOf("N-1;;;A"), HasSubstr("It has 4 fields and the first line names 8"));
    EXPECT_THAT(ReasonOf("N-1;;;A;;O'Brien;;"), HasSubstr("apostrophe"));
    EXPECT_THAT(ReasonOf("N-1;;;A;;\"A;B\";;"), HasSubstr("semicolon"));
    EXPECT_THAT(ReasonOf("N-1;;;A;no;A;;"), HasSubstr("'no' is no number"));
    EXPECT_THAT(ReasonOf("N-1;;;A;;;77;"), HasSubstr("a serial or a date but no certificate"));
    EXPECT_THAT(ReasonOf("N-1;;;\xE9;;A;;"), HasSubstr("no UTF-8"));
    EXPECT_THAT(ReasonOf("N-1;;;A;;A;;\nN-1;;;B;;C;;"),
                HasSubstr("has another last-name in a line before"));
    EXPECT_THAT(ReasonOf("N-1;;;A;;A;;\nN-2;;;B;;a;;"),
                HasSubstr("The certificate 'a' is that of holder 'N-1' already"));
    EXPECT_THAT(ReasonOf("N-1;;;A;;ÉLODIE LEFÈVRE;;"),
                HasSubstr("is that of holder 'FR-0001' already"));
    EXPECT_THAT(ReasonOf("FR-0001;DUPONTSA;Élodie;Dupont;0;X;;"),
                HasSubstr("has another last-name in the database. An import changes nobody."));
    EXPECT_THAT(ReasonOf("FR-0001;DUPONTSA;Élodie;Lefèvre;0;;;"),
                HasSubstr("It says nothing that is not there already"));
}

TEST_F(RulesImportHolders, AWrongHeadingIsTold)
{
    EXPECT_THAT(Import("huid;firstname\n").errors,
                AllOf(HasSubstr("holders.csv, line 1: 'firstname' is no column"),
                      HasSubstr("Did you mean first-name?"), HasSubstr("Nothing was imported")));
    EXPECT_THAT(Import("huid;huid\n").errors, HasSubstr("stands there twice"));
    EXPECT_THAT(Import("last-name\n").errors, HasSubstr("the column huid is missing"));
    EXPECT_THAT(Import("").errors, HasSubstr("is empty"));
    EXPECT_EQ(Import("").status, 1);
}

TEST_F(RulesImportHolders, AFileOfRejectsThatIsThereIsNotReplaced)
{
    m_folder.Write("rejects.csv", "mine");
    const std::string before = Exported();

    const Answer answer =
        Import(std::string(kHeading) + "N-1;;;A;;A;;\n;;;B;;B;;\n", WithRejects());

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("Name one that is not there yet"));
    EXPECT_EQ(ReadWholeFile(m_rejects), "mine");
    EXPECT_EQ(Exported(), before);
}

TEST_F(RulesImportHolders, WhatTheDatabaseRefusesLeavesNoFileOfRejects)
{
    m_database.Execute(L"CREATE UNIQUE INDEX ONLY_ONE ON SSR_HOLDERID (SERIAL)");
    const std::string before = Exported();

    const Answer answer = Import(
        std::string(kHeading) + "N-1;;;A;;A;77;\nN-2;;;B;;B;77;\n;;;C;;C;;\n", WithRejects());

    EXPECT_EQ(answer.status, 3);
    EXPECT_FALSE(std::filesystem::exists(m_rejects));
    EXPECT_EQ(Exported(), before);
}

TEST_F(RulesImportHolders, NoRejectedLineLeavesNoFile)
{
    EXPECT_EQ(Import(std::string(kHeading) + "N-1;;;A;;A;;\n", WithRejects()).status, 0);
    EXPECT_FALSE(std::filesystem::exists(m_rejects));
}

TEST_F(RulesImportHolders, IsOneJsonObjectWhereJsonIsAskedFor)
{
    auto options = WithRejects();
    options.emplace_back("--json");

    const Answer answer = Import(std::string(kHeading) + "N-1;;;A;;A;;\n;;;B;;B;;\n", options);

    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.Json()["added"], 1);
    EXPECT_EQ(answer.Json()["rejected"][0]["line"], 3);
}

TEST_F(RulesImportHolders, AFileThatIsNotThereIsRefused)
{
    const std::string none = m_folder.Path("none.csv");
    EXPECT_EQ(RunSigncheck({"rules", "import-holders", none, "--db", Db()}).status, 64);
    EXPECT_THAT(RunSigncheck({"rules", "import-holders"}).errors,
                HasSubstr("argument FILE is missing. Give the path of a CSV file"));
}

} // namespace
} // namespace testing_support
