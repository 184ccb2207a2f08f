#pragma once

#include "tests/testing/test_database.h"

#include <string>
#include <vector>

namespace testing_support
{

/// A holder row with its certificates.
struct Holder
{
    explicit Holder(std::wstring holderId) : huid(std::move(holderId)) {}

    Holder& Named(std::wstring first, std::wstring last);
    Holder& Certificate(std::wstring commonName, std::wstring serial = L"01");
    Holder& Opposition(std::wstring value);
    Holder& Blocked() { return Opposition(L"1"); }

    std::wstring huid;
    std::wstring vpname = L"PARTNER1";
    std::wstring firstName = L"First";
    std::wstring lastName = L"Last";
    std::wstring opposition = L"0";
    struct Identity
    {
        std::wstring commonName;
        std::wstring serial;
    };
    std::vector<Identity> certificates;
};

/// One line of SSR_CONTRACTRULE.
struct Rule
{
    std::wstring huid1;
    std::wstring huid2;
    int alone = 0;
    std::wstring amount = L"1000.00";
    int tlevel = 0;
};

/// A contract: a row of SSR_CONTRACT, and one of SSR_CONTRACTCUR where it has rules.
struct Contract
{
    explicit Contract(std::wstring contractId) : cuid(std::move(contractId)) {}

    Contract& AloneBy(std::wstring holderId);
    Contract& By(std::wstring firstHolderId, std::wstring secondHolderId);
    Contract& UpTo(std::wstring amount);       ///< of the last rule, on the file's total
    Contract& OrdersUpTo(std::wstring amount); ///< of the last rule, on the largest order
    Contract& Level(int tlevel);               ///< of the last rule
    Contract& DoubleSignature();               ///< PROFILE 1
    Contract& Profile(int profile);
    Contract& AllHolders();
    Contract& Opposition(std::wstring value);
    Contract& WithoutRules(); ///< a SSR_CONTRACT row only

    std::wstring cuid;
    std::wstring vpname = L"PARTNER1";
    std::wstring vfname = L"SERVICE1";
    std::wstring vcname = L"CLIENT1";
    int protocol = 9;
    int server = 1;
    int type = 1;
    int profile = 0;
    int allHolders = 0;
    std::wstring opposition = L"0";
    bool rulesKnown = true;
    std::vector<Rule> rules;
};

/// Rows of the rule tables in a test database, a valid contract by default.
class Bank
{
public:
    explicit Bank(TestDatabase& database) : m_database(database) {}

    Bank& With(const Holder& holder);
    Bank& With(const Contract& contract);

private:
    TestDatabase& m_database;
};

} // namespace testing_support
