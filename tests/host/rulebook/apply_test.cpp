// signcheck rules apply: all of a rule file or nothing of it.

#include "database/cdatabase.h"
#include "database/dialect.h"
#include "host/refusal.h"
#include "host/rulebook/book_update.h"
#include "host/rulebook/rule_book_reader.h"
#include "tests/host/rulebook/rule_file_run.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

/// What makes the database write another limit than it was given, in each product's words.
std::vector<const wchar_t*> AlteringTrigger(database::Product product)
{
    switch (product)
    {
    case database::Product::PostgreSql:
        return {L"CREATE OR REPLACE FUNCTION ALTER_LIMIT() RETURNS TRIGGER LANGUAGE plpgsql AS "
                L"'BEGIN IF NEW.AMOUNT = ''7500.00'' THEN NEW.AMOUNT := ''1''; END IF; "
                L"RETURN NEW; END'",
                L"CREATE TRIGGER ALTERS BEFORE INSERT ON SSR_CONTRACTRULE FOR EACH ROW "
                L"EXECUTE FUNCTION ALTER_LIMIT()"};
    case database::Product::MariaDb:
        return {L"CREATE TRIGGER ALTERS BEFORE INSERT ON SSR_CONTRACTRULE FOR EACH ROW "
                L"SET NEW.AMOUNT = IF(NEW.AMOUNT = '7500.00', '1', NEW.AMOUNT)"};
    default:
        return {L"CREATE TRIGGER ALTERS AFTER INSERT ON SSR_CONTRACTRULE BEGIN "
                L"UPDATE SSR_CONTRACTRULE SET AMOUNT = '1' WHERE AMOUNT = '7500.00'; END"};
    }
}

class RulesApply : public RuleFileTest
{
protected:
    RulesApply()
    {
        m_opened.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    }

    Answer Apply(const std::string& toml, std::vector<std::string> more = {})
    {
        more.insert(more.begin(), "--yes");
        return Rules("apply", toml, more);
    }

    rulebook::RuleBook Bank() { return rulebook::ReadRuleBook(m_opened); }

    CDatabase m_opened;
};

TEST_F(RulesApply, AnEditedFileIsWhatTheDatabaseHoldsThen)
{
    const std::string edited = Replaced(Replaced(Exported(), "\"O'Brien\"", "\"O'Brien-Weiß 𠮷 \""),
                                        "\"5000.00\"", "\"7500.00\"");

    const Answer answer = Apply(edited);

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("holder IE-0001 changed"), HasSubstr("contract C-7001 changed"),
                      testing::EndsWith("Done: the database holds what the file says.\n")));
    EXPECT_EQ(Rules("diff", edited).output, "No difference.\n");
}

TEST_F(RulesApply, ACheckIsJudgedByTheNewRules)
{
    const auto check = With(CheckOf("Élodie Lefèvre"), "--total", "60000.00");
    EXPECT_EQ(RunSigncheck(check).status, 1);

    Apply(Replaced(Exported("C-1001"), "\"FR-0001\", alone = true, amount = \"50000.00\"",
                   "\"FR-0001\", alone = true, amount = \"60000.00\""));

    EXPECT_EQ(RunSigncheck(check).status, 0);
}

TEST_F(RulesApply, RulesAreJudgedInTheOrderOfTheFile)
{
    const std::string rules = R"(rules = [
  { amount = "3.00" },
  { amount = "1.00" },
  { amount = "2.00" },
  { amount = "1.00" },
])";
    std::string toml = Exported("C-1001");
    toml.replace(toml.find("rules = ["), std::string::npos, rules);

    EXPECT_EQ(Apply(toml).status, 0);

    EXPECT_THAT(m_database.Query(L"SELECT R.AMOUNT FROM SSR_CONTRACTCUR C, SSR_CONTRACTRULE R "
                                 L"WHERE TYPE=1 AND C.CUID = R.CUID AND C.CUID='C-1001'"),
                ElementsAre(Row{L"3.00"}, Row{L"1.00"}, Row{L"2.00"}, Row{L"1.00"}));
}

TEST_F(RulesApply, WhatTheFileDoesNotNameStays)
{
    const rulebook::RuleBook before = Bank();

    EXPECT_EQ(Apply("[[holder]]\nhuid = \"N-1\"\n").status, 0);

    const rulebook::RuleBook after = Bank();
    EXPECT_EQ(after.contracts, before.contracts);
    EXPECT_EQ(after.holders.size(), before.holders.size() + 1);
}

TEST_F(RulesApply, WithRemoveNothingButTheFileStays)
{
    const std::string part = Exported("C-7001");

    const Answer answer = Apply(part, {"--remove"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(Exported(), part);
    EXPECT_EQ(m_database.Query(L"SELECT HUID FROM SSR_HOLDERID").size(), 2U);
    EXPECT_EQ(m_database.Query(L"SELECT CUID FROM SSR_CONTRACTRULE").size(), 2U);
}

TEST_F(RulesApply, AnEmptyDatabaseTakesTheWholeBank)
{
    const std::string bank = Exported();
    EXPECT_EQ(Apply("", {"--remove"}).status, 0);
    EXPECT_TRUE(Bank().holders.empty());
    EXPECT_TRUE(Bank().contracts.empty());

    EXPECT_EQ(Apply(bank).status, 0);

    EXPECT_EQ(Exported(), bank);
}

TEST_F(RulesApply, NothingToChangeIsDone)
{
    const Answer answer = Apply(Exported());

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, "No difference.\n\nNothing to change.\n");
}

TEST_F(RulesApply, WithoutATerminalItMustBeAgreedBefore)
{
    const rulebook::RuleBook before = Bank();

    const Answer answer = Rules("apply", "[[holder]]\nhuid = \"N-1\"\n");
    const Answer asJson = Rules("apply", "[[holder]]\nhuid = \"N-1\"\n", {"--json"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("no terminal"));
    EXPECT_EQ(asJson.status, 64);
    EXPECT_THAT(asJson.errors, HasSubstr("give --yes as well"));
    EXPECT_EQ(Bank(), before);
}

TEST_F(RulesApply, AFileWithAProblemChangesNothing)
{
    const rulebook::RuleBook before = Bank();

    const Answer answer =
        Apply("[[holder]]\nhuid = \"N-1\"\n[[holder]]\nhuid = \"N-2\"\npartner = \"NINECHARS\"\n");

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.errors, HasSubstr("line 5, field holder.partner"));
    EXPECT_EQ(Bank(), before);
}

TEST_F(RulesApply, ARowThatTheDatabaseRefusesTakesBackAllOthers)
{
    m_database.Execute(L"CREATE UNIQUE INDEX ONLY_ONE ON SSR_CONTRACTCUR (CUID, PROTOCOL)");
    const rulebook::RuleBook before = Bank();

    const Answer answer =
        Apply("[[holder]]\nhuid = \"N-1\"\n" +
              Replaced(Exported("C-7001"), "terms = [", "terms = [ { type = 2 }, "));

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("cannot be written"), HasSubstr("Nothing was changed")));
    EXPECT_EQ(Bank(), before);
}

TEST_F(RulesApply, ARowThatTheDatabaseAltersTakesBackAllOthers)
{
    for (const wchar_t* const statement : AlteringTrigger(m_opened.GetDialect().product))
    {
        m_database.Execute(statement);
    }
    const rulebook::RuleBook before = Bank();

    const Answer answer = Apply(Replaced(Exported("C-7001"), "\"5000.00\"", "\"7500.00\""));

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("what was written is not what was read back"),
                                     HasSubstr("Nothing was changed")));
    EXPECT_EQ(Bank(), before);
}

TEST_F(RulesApply, ADatabaseThatChangedMeanwhileIsLeftAlone)
{
    const rulebook::RuleBook seen = Bank();
    rulebook::RuleBook wanted = seen;
    wanted.contracts[0].rules.clear();
    const rulebook::BookChange change = rulebook::Compare(seen, wanted, false);
    m_database.Execute(L"UPDATE SSR_HOLDER SET OPPOSITION = '1' WHERE HUID = 'DE-0001'");
    const rulebook::RuleBook before = Bank();
    const host::Connection connection = {Db(), Db(), "option --db"};

    try
    {
        rulebook::UpdateBook(m_opened, connection, seen, change);
        FAIL() << "the change was made";
    }
    catch (const host::Refusal& refusal)
    {
        EXPECT_THAT(refusal.what(), HasSubstr("changed by somebody else meanwhile"));
    }
    EXPECT_EQ(Bank(), before);
}

TEST_F(RulesApply, CertificatesThatStoodThereWithoutAHolderAreNotTheNewOnes)
{
    m_database.Execute(L"INSERT INTO SSR_HOLDERID (HUID, CN) VALUES ('N-1', 'Mallory')");

    const Answer answer =
        Apply("[[holder]]\nhuid = \"N-1\"\ncertificates = [ { name = \"Nora\" } ]\n");

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(m_database.Query(L"SELECT CN FROM SSR_HOLDERID WHERE HUID = 'N-1'"),
                ElementsAre(Row{L"Nora"}));
}

// The names of a shared certificate are those of the holder whose row comes last.
TEST_F(RulesApply, CertificatesThatStayKeepTheirPlaces)
{
    const auto places = [this]
    { return m_database.Query(L"SELECT HUID FROM SSR_HOLDERID WHERE CN = 'Cabinet Lacroix'"); };
    const auto before = places();

    EXPECT_EQ(
        Apply(Replaced(Exported("C-4001"), "\"Cabinet Lacroix\"\nopp", "\"Lacroix et Cie\"\nopp"))
            .status,
        0);

    EXPECT_EQ(places(), before);
    EXPECT_THAT(before, ElementsAre(Row{L"FR-0004"}, Row{L"FR-0005"}));
}

TEST_F(RulesApply, TermsThatAwaitTheirIdentifierComeAndGo)
{
    const std::string awaiting = "[[contract]]\npartner = \"P\"\nservice = \"S\"\nclient = \"C\"\n"
                                 "protocol = 9\nside = \"server\"\nterms = [ { type = 5 } ]\n";

    EXPECT_EQ(Apply(awaiting).status, 0);
    EXPECT_EQ(Rules("diff", awaiting).status, 0);
    EXPECT_EQ(m_database.Query(L"SELECT TYPE FROM SSR_CONTRACTCUR WHERE CUID IS NULL").size(), 1U);
    EXPECT_EQ(Apply("", {"--remove"}).status, 0);
    EXPECT_EQ(m_database.Query(L"SELECT TYPE FROM SSR_CONTRACTCUR").size(), 0U);
}

TEST_F(RulesApply, TextsThatLookLikeStatementsAreKeptAsTheyStand)
{
    const rulebook::RuleBook before = Bank();
    const std::string hostile =
        "[[holder]]\nhuid = 'H\\'\npartner = 'P\\'\n"
        "first-name = \"O'Brien\\\\'; DROP TABLE SSR_HOLDER; --\"\n"
        "last-name = \"'' || {fn user()} %s ? \u2019 \U0001D49C \\\\\"\n"
        "certificates = [ { name = 'Bob \\', serial = \"\\\\'); --\" } ]\n"
        "[[contract]]\ncuid = 'X\\'\npartner = 'P\\'\nservice = 'S\\'\nclient = 'C\\'\n"
        "protocol = 9\nside = \"server\"\nterms = [ { type = 1 } ]\n"
        "rules = [ { holder1 = 'H\\', alone = true, amount = \"1.00\", level = \"file\" } ]\n";

    const Answer applied = Apply(hostile);

    EXPECT_EQ(applied.status, 0) << applied.errors;
    EXPECT_EQ(Rules("diff", hostile).status, 0);
    const rulebook::RuleBook after = Bank();
    EXPECT_EQ(after.holders.size(), before.holders.size() + 1);
    EXPECT_EQ(after.contracts.size(), before.contracts.size() + 1);
}

TEST_F(RulesApply, IsOneJsonObjectWhereJsonIsAskedFor)
{
    const Answer answer = Apply("[[holder]]\nhuid = \"N-1\"\n", {"--json"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(answer.Json()["applied"], true);
    EXPECT_EQ(answer.Json()["holders"][0]["id"], "N-1");
}

} // namespace
} // namespace testing_support
