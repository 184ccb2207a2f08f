// signcheck rules validate with a database: what of a rule file collides with what stays there.

#include "tests/host/rulebook/rule_file_run.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

std::string ContractOf(const std::string& cuid, const std::string& partner,
                       const std::string& service, const std::string& client)
{
    return "[[contract]]\ncuid = \"" + cuid + "\"\npartner = \"" + partner + "\"\nservice = \"" +
           service + "\"\nclient = \"" + client +
           "\"\nprotocol = 9\nside = \"server\"\nterms = [ { type = 1 } ]\n"
           "rules = [ { holder1 = \"FR-0001\", alone = true, amount = \"1.00\", level = \"file\" } "
           "]\n";
}

class RulesValidateWithDatabase : public RuleFileTest
{
protected:
    // The only finding, as line, field, severity and text.
    std::string FindingOf(const std::string& toml)
    {
        const Answer answer = Rules("validate", toml, {"--json"});
        const auto findings = answer.Json()["findings"];
        EXPECT_THAT(findings, SizeIs(1)) << findings.dump(2);
        if (findings.size() != 1)
        {
            return {};
        }
        const auto& finding = findings[0];
        EXPECT_EQ(answer.status, finding["severity"] == "warning" ? 0 : 1);
        EXPECT_NE(finding["remedy"], "");
        return "line " + finding["line"].dump() + ", " + finding["field"].get<std::string>() +
               ": " + finding["severity"].get<std::string>() + ": " +
               finding["text"].get<std::string>();
    }
};

TEST_F(RulesValidateWithDatabase, HoldersOfTheDatabaseAreKnown)
{
    const std::string toml = ContractOf("N-1", "NEW", "CCT", "NEW");
    const std::string file = m_folder.Write("part.toml", toml);

    EXPECT_EQ(RunSigncheck({"rules", "validate", file}).status, 1);
    EXPECT_EQ(Rules("validate", toml).status, 0);
}

TEST_F(RulesValidateWithDatabase, ItTellsWhatWasLookedAt)
{
    const std::string file = m_folder.Write("bank.toml", Exported());

    const Answer compared = Rules("validate", Exported());
    EXPECT_THAT(compared.output, EndsWith("Compared with 12 holders and 10 contracts of the "
                                          "database.\n"));
    const auto alone = RunSigncheck({"rules", "validate", file, "--json"}).Json();
    EXPECT_TRUE(alone["comparedWith"].is_null());
    const auto both = Rules("validate", Exported(), {"--json"}).Json();
    EXPECT_EQ(both["comparedWith"]["holders"], 12);
    EXPECT_EQ(both["comparedWith"]["contracts"], 10);
}

TEST_F(RulesValidateWithDatabase, TheDatabaseOfTheEnvironmentIsComparedWith)
{
    const ScopedEnvironment connection("SIGNCHECK_DB", Db().c_str());
    const std::string file = m_folder.Write(
        "part.toml",
        "[[holder]]\nhuid = \"N-1\"\ncertificates = [ { name = \"Käthe Schröder\" } ]");

    EXPECT_THAT(RunSigncheck({"rules", "validate", file}).output,
                AllOf(HasSubstr("also that of holder 'DE-0002' of the database"),
                      HasSubstr("0 problems, 1 warning.\nCompared with 12 holders")));
}

TEST_F(RulesValidateWithDatabase, TheExportOfTheSampleBankCollidesWithNothing)
{
    const auto json = Rules("validate", Exported(), {"--json"}).Json();

    EXPECT_EQ(json["holders"], 12);
    EXPECT_EQ(json["rules"], 12);
    EXPECT_EQ(json["problems"], 0);
    // Two certificates of the bank are shared on purpose.
    EXPECT_EQ(json["warnings"], 2);
}

TEST_F(RulesValidateWithDatabase, ACertificateOfAnotherHolder)
{
    EXPECT_THAT(FindingOf("[[holder]]\nhuid = \"N-1\"\ncertificates = [\n  { name = "
                          "\"KÄTHE schröder\" } ]\n"),
                HasSubstr("line 4, holder.certificates.name: warning: the certificate 'KÄTHE "
                          "schröder' is also that of holder 'DE-0002' of the database: who signs "
                          "with it counts as either."));
}

TEST_F(RulesValidateWithDatabase, ACertificateTwiceInTheFileStaysAProblemBesideTheDatabase)
{
    const auto json = Rules("validate",
                            "[[holder]]\nhuid = \"N-1\"\ncertificates = [ { name = \"Käthe "
                            "Schröder\" }, { name = \"käthe schröder\" } ]\n",
                            {"--json"})
                          .Json();

    EXPECT_EQ(json["problems"], 1);
    EXPECT_EQ(json["warnings"], 2);
}

TEST_F(RulesValidateWithDatabase, TermsOfAnotherContract)
{
    EXPECT_THAT(FindingOf(ContractOf("N-1", "DUPONTSA", "CCT", "TRESOR")),
                HasSubstr("line 8, contract.terms: warning: contract 'C-1001' of the database has "
                          "terms for the same partner, service, client, protocol, side and type"));
}

TEST_F(RulesValidateWithDatabase, TermsThatAwaitTheirContractCollideUnlessTheFileHasThem)
{
    m_database.Execute(L"UPDATE SSR_CONTRACTCUR SET CUID = NULL WHERE CUID = 'C-1001'");

    EXPECT_THAT(FindingOf(ContractOf("N-1", "DUPONTSA", "CCT", "TRESOR")),
                HasSubstr("a contract without cuid of the database has terms for the same"));
    EXPECT_EQ(Rules("validate", Exported(), {"--json"}).Json()["problems"], 0);
}

TEST_F(RulesValidateWithDatabase, NamesThatBeginAsThoseOfTheDatabase)
{
    const Answer answer = Rules("validate", ContractOf("N-1", "DUPONTSA2", "XXX", "XXX"));

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("line 3, field contract.partner: 'DUPONTSA2' has 9 characters"),
                      HasSubstr("line 3, field contract.partner: 'DUPONTSA2' is the same as "
                                "'DUPONTSA' of contract 'C-1001' of the database in its first 8 "
                                "characters"),
                      HasSubstr("2 problems, 0 warnings")));
}

TEST_F(RulesValidateWithDatabase, KeysThatDifferFromThoseOfTheDatabaseInLetterCaseOnly)
{
    EXPECT_THAT(FindingOf("[[holder]]\nhuid = \"fr-0001\"\n"),
                HasSubstr("line 2, holder.huid: warning: 'fr-0001' differs from holder 'FR-0001' "
                          "of the database in letter case only"));
    EXPECT_THAT(FindingOf(ContractOf("c-1001", "NEW", "NEW", "NEW")),
                HasSubstr("line 2, contract.cuid: warning: 'c-1001' differs from contract 'C-1001' "
                          "of the database"));
}

TEST_F(RulesValidateWithDatabase, NamesThatDifferFromThoseOfTheDatabaseInLetterCaseOnly)
{
    EXPECT_THAT(FindingOf(ContractOf("N-1", "DupontSA", "CCT", "TRESOR")),
                HasSubstr("line 3, contract.partner: warning: 'DupontSA' differs from 'DUPONTSA' "
                          "of contract 'C-1001' of the database in letter case only"));
}

TEST_F(RulesValidateWithDatabase, WhatTheFileReplacesIsNoDuplicate)
{
    // Käthe Schröder's certificate changes hands, and C-2001 takes the terms over that C-2002 had.
    const std::string changed =
        "[[holder]]\nhuid = \"DE-0002\"\n"
        "[[holder]]\nhuid = \"N-1\"\ncertificates = [ { name = \"Käthe Schröder\" } ]\n" +
        ContractOf("C-2001", "MUELLER", "CCU", "KASSE") +
        ContractOf("C-2002", "MUELLER", "CCT", "KASSE");

    const Answer answer = Rules("validate", changed);

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, HasSubstr("0 problems, 0 warnings."));
}

TEST_F(RulesValidateWithDatabase, ApplyRefusesTheSameBeforeAnythingIsWritten)
{
    const std::string before = Exported();

    const Answer answer = Rules("apply", ContractOf("N-1", "DUPONTSA2", "XXX", "XXX"), {"--yes"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("rules.toml, line 3, field contract.partner: 'DUPONTSA2' is the "
                                "same as 'DUPONTSA' of contract 'C-1001' of the database"),
                      HasSubstr("rules.toml has 2 problems. Correct them first")));
    EXPECT_EQ(Exported(), before);
}

TEST_F(RulesValidateWithDatabase, ApplyWarnsOfACertificateThatTwoHoldersWillHave)
{
    const Answer answer = Rules("apply",
                                "[[holder]]\nhuid = \"N-1\"\ncertificates = [ { name = \"Käthe "
                                "Schröder\" } ]\n",
                                {"--yes"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors, HasSubstr("WARNING: the certificate 'Käthe Schröder' is also that "
                                         "of holder 'DE-0002' of the database"));
}

TEST_F(RulesValidateWithDatabase, WhatIsTakenAwayCollidesWithNothing)
{
    const Answer answer = Rules("diff",
                                "[[holder]]\nhuid = \"N-1\"\ncertificates = [ { name = \"Käthe "
                                "Schröder\" } ]\n",
                                {"--remove"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.errors, "");
}

TEST_F(RulesValidateWithDatabase, ADatabaseThatIsNotThereIsRefused)
{
    const Answer answer =
        RunSigncheck({"rules", "validate", m_folder.Write("part.toml", "[[holder]]\nhuid = \"N\""),
                      "--db", "Driver=SQLite3;Database=" + m_folder.Path("none") + "/none.db"});

    EXPECT_EQ(answer.status, 3);
    EXPECT_EQ(answer.output, "");
}

} // namespace
} // namespace testing_support
