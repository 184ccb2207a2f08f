// Copies for users who may create none in the database product: a SQLite file stands in, and the
// output tells how it may differ.

#include "database/cdatabase.h"
#include "database/dialect.h"
#include "host/scratch/leftovers.h"
#include "support/codepage.h"
#include "tests/host/host_user.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

/// The bank on a server, and a user with the rights of a host: to read the rules and to insert what
/// is recorded, but to create nothing.
class Fallback : public SampleBankTest
{
protected:
    void SetUp() override
    {
        m_source.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        const auto product = m_source.GetDialect().product;
        if (product == database::Product::Sqlite)
        {
            GTEST_SKIP() << "on SQLite every copy is a file";
        }
        m_where = {Db(), "the bank", "option --db"};
        m_asHost = AsHostUser(m_source, Db());
    }

    void Run(const std::string& statement)
    {
        m_source.ExecuteSQLW(support::WideFromUtf8(statement).c_str());
    }

    Answer Order(const std::string& command, const std::string& connection,
                 const std::string& more = {}) const
    {
        std::vector<std::string> arguments = {command,     "C-7001",     "--db",       connection,
                                              "--signers", "Björn Weiß", "--total",    "20000.00",
                                              "--largest", "9000.00",    "--currency", "EUR"};
        if (!more.empty())
        {
            arguments.push_back(more);
        }
        return RunSigncheck(arguments);
    }

    /// Without the paragraph that tells where the copy was.
    static std::string WithoutProvenance(const std::string& text)
    {
        const std::size_t begin = text.find("Decided by the library");
        const std::size_t end = text.find("\n\n", begin);
        return text.substr(0, begin) + (end == std::string::npos ? "" : text.substr(end));
    }

    static std::string Unwrapped(std::string text)
    {
        for (std::size_t at = text.find("\n  "); at != std::string::npos;
             at = text.find("\n  ", at))
        {
            const std::size_t words = text.find_first_not_of(" \n", at);
            text.replace(at, words - at, " ");
        }
        return text;
    }

    void ExpectToTellOfTheFile(const Answer& answer)
    {
        EXPECT_EQ(answer.errors, "");
        EXPECT_THAT(Unwrapped(answer.output),
                    AllOf(HasSubstr("on a copy of the rules in a SQLite file of its own"),
                          HasSubstr("The copy could not be made in the database itself ("),
                          HasSubstr("letters beyond ASCII are equal only in the same case"),
                          HasSubstr("trailing blanks count, accents always count"),
                          HasSubstr("may find other holders for such names")));
        EXPECT_THAT(scratch::LeftoversIn(m_source, m_where), IsEmpty());
    }

    CDatabase m_source;
    host::Connection m_where;
    std::string m_asHost;
};

TEST_F(Fallback, JudgesAMapAsTheProductDoesAndTellsWhatMayDiffer)
{
    const Answer answer = RunSigncheck({"map", "C-7001", "--db", m_asHost});

    EXPECT_EQ(answer.status, 0);
    ExpectToTellOfTheFile(answer);
    const Answer within = RunSigncheck({"map", "C-7001", "--db", Db()});
    EXPECT_THAT(Unwrapped(within.output), HasSubstr(" of its own; nothing was"));
    EXPECT_EQ(answer.output.substr(answer.output.find("Order type 1")),
              within.output.substr(within.output.find("Order type 1")));
}

TEST_F(Fallback, IsToldByLint)
{
    const Answer answer = RunSigncheck({"lint", "C-7001", "--db", m_asHost});

    EXPECT_EQ(answer.status, 1);
    ExpectToTellOfTheFile(answer);
}

TEST_F(Fallback, IsToldOfOrdersThatNobodyHasMade)
{
    for (const std::string command : {"simulate", "pending"})
    {
        SCOPED_TRACE(command);
        const Answer answer = Order(command, m_asHost);

        EXPECT_EQ(answer.status, 1);
        ExpectToTellOfTheFile(answer);
        EXPECT_EQ(WithoutProvenance(answer.output), WithoutProvenance(Order(command, Db()).output));
    }
}

TEST_F(Fallback, IsToldOfChangesThatWouldHaveBeenAccepted)
{
    const Answer answer = Order("simulate", m_asHost, "--explain");

    ExpectToTellOfTheFile(answer);
    EXPECT_THAT(answer.output, HasSubstr("Accepted  if Siobhán O'Brien also signs."));
}

TEST_F(Fallback, IsToldByReplay)
{
    Run("GRANT SELECT ON HST_SIGNRULES TO signutils_host");
    for (const char* const total : {"4000.00", "20000.00"})
    {
        RunSigncheck({"check",     m_order, "--db",       Db(),         "--partner",  "BODENSEE",
                      "--service", "CCT",   "--client",   "FINANZ",     "--protocol", "9",
                      "--type",    "1",     "--signers",  "Björn Weiß", "--total",    total,
                      "--largest", total,   "--currency", "EUR"});
    }
    std::string toml =
        RunSigncheck({"rules", "export", "--contract", "C-7001", "--db", Db()}).output;
    toml.replace(toml.find("\"5000.00"), 8, "\"1000.00");
    const std::string rules = m_folder.Write("rules.toml", toml);

    const Answer answer = RunSigncheck({"replay", "--rules", rules, "--db", m_asHost});
    const Answer within = RunSigncheck({"replay", "--rules", rules, "--db", Db()});

    EXPECT_EQ(answer.status, 1);
    ExpectToTellOfTheFile(answer);
    EXPECT_THAT(answer.output, HasSubstr("1 of 2 past orders would now be refused"));
    EXPECT_EQ(WithoutProvenance(answer.output), WithoutProvenance(within.output));
}

TEST_F(Fallback, IsToldInJson)
{
    const auto provenance =
        RunSigncheck({"map", "C-7001", "--db", m_asHost, "--json"}).Json()["provenance"];

    EXPECT_THAT(provenance.get<std::string>(),
                AllOf(HasSubstr("a SQLite file of its own"), HasSubstr("same case")));
}

} // namespace
} // namespace testing_support
