// Every check that the sample bank is made for, end to end.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <ostream>

namespace testing_support
{
namespace
{

struct OutcomeCase
{
    const char* name;
    std::vector<std::string> contract; ///< partner, service, client
    bool isDistributed;
    const char* signers;
    const char* total;
    const char* largest;
    const char* outcome;
    const char* reasonCode;
    int status;
    int rows;
};

void PrintTo(const OutcomeCase& each, std::ostream* stream)
{
    *stream << each.name;
}

const std::vector<std::string> kC1001 = {"DUPONTSA", "CCT", "TRESOR"};
const std::vector<std::string> kC1002 = {"DUPONTSA", "CCU", "TRESOR"};
const std::vector<std::string> kC2001 = {"MUELLER", "CCT", "KASSE"};
const std::vector<std::string> kC2002 = {"MUELLER", "CCU", "KASSE"};
const std::vector<std::string> kC3001 = {"IBEREXPO", "CCT", "NOMINAS"};
const std::vector<std::string> kC3002 = {"IBEREXPO", "CDD", "COBROS"};
const std::vector<std::string> kC4001 = {"LACROIX", "CCT", "ETUDE"};
const std::vector<std::string> kC5001 = {"GARONNE", "CCT", "ACHATS"};
const std::vector<std::string> kC6001 = {"DANUBE", "CCT", "EINKAUF"};
const std::vector<std::string> kC7001 = {"BODENSEE", "CCT", "FINANZ"};

// clang-format off
const OutcomeCase kCases[] = {
    {"SuccessByOne", kC1001, false, "Élodie Lefèvre", "12500.00", "8000.00", "success", "", 0, 1},
    {"EqualToTheLimitPasses", kC1001, false, "Élodie Lefèvre", "50000.00", "50000.00", "success", "", 0, 1},
    {"TotalOverTheLimit", kC1001, false, "Élodie Lefèvre", "64200.00", "20000.00", "refused", "AM02", 1, 1},
    {"HolderInOpposition", kC1001, false, "Hélène Garçon", "900.00", "900.00", "refused", "AM02", 1, 1},
    {"UnknownSigner", kC1001, false, "Paul Martin", "900.00", "900.00", "no-rule", "NARR", 2, 1},
    {"WhoMustSignAloneSignedWithAnother", kC1001, false, "Élodie Lefèvre;Jean-François Béranger", "900.00", "900.00", "no-rule", "NARR", 2, 1},
    {"SecondDistributedSignatureOnASingleOne", kC1001, true, "Élodie Lefèvre;Jean-François Béranger", "900.00", "900.00", "refused", "NARR", 1, 2},
    {"AllSignersAllowed", kC1002, false, "Siobhan OBrien", "7300.50", "7300.50", "success", "", 0, 1},
    {"AllSignersAllowedTheSecondUnknown", kC1002, false, "Siobhan OBrien;Paul Martin", "7300.50", "7300.50", "success", "", 0, 1},
    {"AllSignersAllowedSharedCertificate", kC1002, false, "Cabinet Lacroix", "100.00", "100.00", "success", "", 0, 1},
    {"SuccessByTwo", kC2001, false, "Jürgen Großmann;Käthe Schröder", "80000.00", "30000.00", "success", "", 0, 1},
    {"DoubleSignatureMissing", kC2001, false, "Jürgen Großmann", "80000.00", "30000.00", "refused", "NARR", 1, 1},
    {"TheOtherOfTwoHoldersMissing", kC2001, false, "Jürgen Großmann;Björn Weiß", "80000.00", "30000.00", "no-rule", "NARR", 2, 1},
    {"TotalOverTheLimitOfTwo", kC2001, false, "Jürgen Großmann;Käthe Schröder", "100000.01", "30000.00", "refused", "AM02", 1, 1},
    {"ThreeSignersWarnAndPass", kC2001, false, "Jürgen Großmann;Käthe Schröder;Björn Weiß", "80000.00", "30000.00", "success", "", 0, 1},
    {"FirstDistributedSignature", kC2002, true, "Käthe Schröder", "180000.00", "60000.00", "success", "", 0, 1},
    {"DistributedSignaturesComplete", kC2002, true, "Käthe Schröder;Björn Weiß", "180000.00", "60000.00", "success", "", 0, 1},
    {"TheFirstAloneWithoutDistribution", kC2002, false, "Käthe Schröder", "180000.00", "60000.00", "refused", "NARR", 1, 1},
    {"OnlyTheLargestOrderCounts", kC3001, false, "José Núñez Ibáñez", "45000.00", "2500.00", "success", "", 0, 1},
    {"LargestOrderOverTheLimit", kC3001, false, "José Núñez Ibáñez", "45000.00", "3200.00", "refused", "AM02", 1, 1},
    {"SharedCertificateServesOneHolder", kC3002, false, "Tesorería Iberexpo", "9000.00", "4500.00", "refused", "NARR", 1, 1},
    {"TheOtherHolderSignsWithHisOwn", kC3002, false, "Tesorería Iberexpo;Íñigo Castaño", "9000.00", "4500.00", "success", "", 0, 1},
    {"OneCertificateForBothHolders", kC4001, false, "Cabinet Lacroix", "5000.00", "5000.00", "refused", "", 1, 1},
    {"ContractNotActive", kC5001, false, "Jean-François Béranger", "900.00", "900.00", "no-rule", "NARR", 2, 1},
    {"ContractWithoutRules", kC6001, false, "Björn Weiß", "900.00", "900.00", "no-rule", "NARR", 2, 1},
    {"OneFailingRuleOverrulesASucceedingOne", kC7001, false, "Björn Weiß", "20000.00", "9000.00", "refused", "AM02", 1, 2},
    {"BothSignSoTheRuleForOneIsNotConcerned", kC7001, false, "Björn Weiß;Siobhan OBrien", "20000.00", "9000.00", "success", "", 0, 1},
};
// clang-format on

class CheckOutcomes : public SampleBankTest, public testing::WithParamInterface<OutcomeCase>
{
};

TEST_P(CheckOutcomes, AreAsTheSampleBankSays)
{
    const OutcomeCase& expected = GetParam();
    std::vector<std::string> arguments = {"check",      m_order,
                                          "--db",       Db(),
                                          "--partner",  expected.contract[0],
                                          "--service",  expected.contract[1],
                                          "--client",   expected.contract[2],
                                          "--protocol", "9",
                                          "--type",     "1",
                                          "--signers",  expected.signers,
                                          "--total",    expected.total,
                                          "--largest",  expected.largest,
                                          "--currency", "EUR",
                                          "--json"};
    if (expected.isDistributed)
    {
        arguments.emplace_back("--veu");
    }

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, expected.status) << answer.errors;
    EXPECT_EQ(answer.errors, "");
    const auto json = answer.Json();
    EXPECT_EQ(json["outcome"], expected.outcome);
    EXPECT_EQ(json["reasonCode"], expected.reasonCode);
    EXPECT_EQ(json["rows"]["written"], expected.rows);
    EXPECT_EQ(json["journal"], "written");
    EXPECT_FALSE(json["findings"].empty());
    const auto rows = m_database.Query(L"SELECT STATUT FROM HST_SIGNRULES");
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(expected.rows));
    for (const Row& row : rows)
    {
        EXPECT_EQ(row[0], std::to_wstring(json["verdict"].get<int>()));
    }
    EXPECT_EQ(m_database.Query(L"SELECT EVENTID FROM EVT_JOURNAL").size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(SampleBank, CheckOutcomes, testing::ValuesIn(kCases),
                         [](const auto& each) { return std::string(each.param.name); });

} // namespace
} // namespace testing_support
