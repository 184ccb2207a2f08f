#include "tests/host/authority/bank_with_maps.h"

#include "database/dialect.h"
#include "host/rulebook/rule_book_writer.h"
#include "schema/transaction.h"
#include "signutils/signutils.h"
#include "support/codepage.h"
#include "tests/host/authority/random_bank.h"

#include <cstdlib>
#include <string>

namespace testing_support
{

std::uint64_t SettingOr(const char* name, std::uint64_t usual)
{
    const char* const text = std::getenv(name);
    return text == nullptr ? usual : std::strtoull(text, nullptr, 10);
}

void Count(const char* what, std::uint64_t number)
{
    testing::Test::RecordProperty(what, std::to_string(number));
}

BankWithMaps::BankWithMaps()
    : m_spool("SIGNUTILS_SPOOL", m_folder.Path("spool").c_str()),
      m_connection{m_database.ConnexionString(), "the database of the test", "option --db"}
{
    m_source.OpenEx(m_connection.text.c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    if (m_source.GetDialect().product == database::Product::Sqlite)
    {
        // Thousands of books and checks are written, and none has to outlive a power cut.
        m_connection.text += "JournalMode=MEMORY;";
        m_source.Close();
        m_source.OpenEx(m_connection.text.c_str(),
                        CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    }
}

void BankWithMaps::Hold(const rulebook::RuleBook& book)
{
    schema::Transaction transaction(m_source);
    for (const char* const table : {"SSR_HOLDER", "SSR_HOLDERID", "SSR_CONTRACT", "SSR_CONTRACTCUR",
                                    "SSR_CONTRACTRULE", "HST_SIGNRULES", "EVT_JOURNAL"})
    {
        m_source.ExecuteSQLW((L"DELETE FROM " + support::WideFromNarrow(table)).c_str());
    }
    rulebook::WriteRuleBook(m_source, book);
    transaction.Commit();
}

scratch::Decision BankWithMaps::Decide(const scratch::Order& order, std::int64_t type) const
{
    std::wstring list;
    for (const std::string& signer : order.signers)
    {
        list += support::WideFromUtf8(signer) + L";";
    }
    const rulebook::ContractKey key = RandomBankKey();
    SignUtils session;
    session.SetConnexionString(m_connection.text.c_str());
    session.SetContractInfo(static_cast<unsigned long>(type), 9, key.vpname.c_str(),
                            key.vfname.c_str(), key.vcname.c_str(), 1, "");
    session.SetAmountInfo(order.total, order.largest, "EUR");
    if (order.isDistributed)
    {
        session.SetModeVeu();
    }
    const unsigned long verdict = session.CheckSignRules("order.xml", list.c_str());
    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    return {static_cast<unsigned int>(verdict),
            support::Utf8FromNarrow(outcome.reasonCode.SafeGetString()),
            support::Utf8FromWide(outcome.reasonText.SafeGetString())};
}

} // namespace testing_support
