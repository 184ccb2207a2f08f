#include "tests/host/authority/bank_with_maps.h"

#include "host/rulebook/rule_book_writer.h"
#include "signutils/signutils.h"
#include "support/codepage.h"
#include "tests/host/authority/random_bank.h"

#include <cstdlib>

namespace testing_support
{

std::uint64_t SettingOr(const char* name, std::uint64_t usual)
{
    const char* const text = std::getenv(name);
    return text == nullptr ? usual : std::strtoull(text, nullptr, 10);
}

BankWithMaps::BankWithMaps()
    : m_spool("SIGNUTILS_SPOOL", m_folder.Path("spool").c_str()),
      m_connection{m_database.ConnexionString(), "the database of the test", "option --db"}
{
    m_source.OpenEx(m_connection.text.c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
}

void BankWithMaps::Hold(const rulebook::RuleBook& book)
{
    for (const char* const table : {"SSR_HOLDER", "SSR_HOLDERID", "SSR_CONTRACT", "SSR_CONTRACTCUR",
                                    "SSR_CONTRACTRULE", "HST_SIGNRULES"})
    {
        m_source.ExecuteSQLW((L"DELETE FROM " + support::WideFromNarrow(table)).c_str());
    }
    rulebook::WriteRuleBook(m_source, book);
}

unsigned long BankWithMaps::Verdict(const std::vector<std::string>& signers, double total,
                                    double largest, bool isDistributed, std::int64_t type) const
{
    std::wstring list;
    for (const std::string& signer : signers)
    {
        list += support::WideFromUtf8(signer) + L";";
    }
    const rulebook::ContractKey key = RandomBankKey();
    SignUtils session;
    session.SetConnexionString(m_connection.text.c_str());
    session.SetContractInfo(static_cast<unsigned long>(type), 9, key.vpname.c_str(),
                            key.vfname.c_str(), key.vcname.c_str(), 1, "");
    session.SetAmountInfo(total, largest, "EUR");
    if (isDistributed)
    {
        session.SetModeVeu();
    }
    const unsigned long verdict = session.CheckSignRules("order.xml", list.c_str());
    EXPECT_TRUE(session.GetLastCheck().ran);
    return verdict;
}

} // namespace testing_support
