// What signcheck lint says of the sample bank and of rules gone wrong.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Lint : public SampleBankTest
{
protected:
    nlohmann::json FindingsOf(const std::string& contract)
    {
        const auto json = RunSigncheck({"lint", contract, "--db", Db(), "--json"}).Json();
        return json["kinds"].empty() ? nlohmann::json::array() : json["kinds"][0]["findings"];
    }

    static std::vector<std::string> Codes(const nlohmann::json& findings)
    {
        std::vector<std::string> codes;
        for (const auto& finding : findings)
        {
            codes.push_back(finding["code"]);
        }
        return codes;
    }

    void AddRule(const std::wstring& values)
    {
        m_database.Execute(L"INSERT INTO SSR_CONTRACTRULE (CUID, HUID1, HUID2, ALONE, AMOUNT, "
                           L"TLEVEL) VALUES (" +
                           values + L")");
    }
};

TEST_F(Lint, FindsALimitForOneThatVetoesTheWiderOne)
{
    const auto findings = FindingsOf("C-7001");

    ASSERT_THAT(Codes(findings), ElementsAre("pair-by-one", "limit-vetoed", "second-refuses"));
    const auto& witness = findings[1]["witnesses"][0];
    EXPECT_THAT(findings[1]["text"].get<std::string>(),
                HasSubstr("rule 1 of C-7001 refuses it by its limit"));
    EXPECT_EQ(witness["signers"][0], "Björn Weiß");
    EXPECT_EQ(witness["total"], 50000.0);
    EXPECT_EQ(witness["outcome"], "refused");
    EXPECT_EQ(witness["reasonCode"], "AM02");
}

TEST_F(Lint, FindsNothingAboutAPairOfTwoWhoMustBothSign)
{
    const Answer answer = RunSigncheck({"lint", "C-2001", "--db", Db()});

    EXPECT_EQ(answer.status, 0) << answer.output;
    EXPECT_THAT(answer.output, HasSubstr("0 findings in 1 contract"));
}

TEST_F(Lint, LooksAtEveryContractAndWritesNothing)
{
    const Answer answer = RunSigncheck({"lint", "--db", Db(), "--json"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.Json()["contracts"], 10);
    EXPECT_EQ(RecordsWritten(), 0U);
}

TEST_F(Lint, FindsThatAnyoneMaySignOrdersOfEveryOtherType)
{
    const auto json = RunSigncheck({"lint", "C-1002", "--db", Db(), "--json"}).Json();

    ASSERT_EQ(json["kinds"].size(), 2U);
    EXPECT_THAT(json["kinds"][1]["kind"].get<std::string>(), HasSubstr("every other order type"));
    EXPECT_EQ(json["kinds"][1]["findings"][0]["code"], "anyone-may-sign");
}

TEST_F(Lint, FindsRulesThatNobodyOrNoCertificateStandsBehind)
{
    m_database.Execute(L"DELETE FROM SSR_HOLDERID WHERE HUID = 'DE-0001'");
    AddRule(L"'C-2001', 'XX-9999', NULL, 1, '10.00', 0");

    const auto findings = FindingsOf("C-2001");

    EXPECT_THAT(Codes(findings), AllOf(Contains("nobody-satisfies"), Contains("never-decides")));
    std::string texts;
    for (const auto& finding : findings)
    {
        texts += finding["text"].get<std::string>() + "\n";
    }
    EXPECT_THAT(texts, HasSubstr("names holder DE-0001, who has no certificate that can sign."));
    EXPECT_THAT(texts, HasSubstr("names holder XX-9999, who is not in SSR_HOLDER."));
}

TEST_F(Lint, FindsTheExpiredCertificateThatCounts)
{
    m_database.Execute(L"UPDATE SSR_HOLDERID SET EXPIRDATE = '2001-12-31' WHERE HUID = 'DE-0001'");

    const auto findings = FindingsOf("C-2001");

    ASSERT_THAT(Codes(findings), ElementsAre("expired-certificate"));
    EXPECT_THAT(findings[0]["text"].get<std::string>(), HasSubstr("expired on 2001-12-31"));
    EXPECT_EQ(findings[0]["witnesses"][0]["outcome"], "accepted");
}

TEST_F(Lint, FindsTheReasonThatDependsOnTheOrderOfTheRows)
{
    const auto findings = FindingsOf("C-1001");

    EXPECT_THAT(Codes(findings), Contains("reason-by-order"));
    const auto& last = findings.back();
    EXPECT_NE(last["witnesses"][0]["reasonCode"], last["witnesses"][1]["reasonCode"]);
}

TEST_F(Lint, RefusesAContractThatIsNotThere)
{
    const Answer answer = RunSigncheck({"lint", "C-9999", "--db", Db()});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.errors, HasSubstr("'C-9999'"));
}

} // namespace
} // namespace testing_support
