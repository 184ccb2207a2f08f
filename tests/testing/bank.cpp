#include "tests/testing/bank.h"

namespace testing_support
{

Holder& Holder::Named(std::wstring first, std::wstring last)
{
    firstName = std::move(first);
    lastName = std::move(last);
    return *this;
}

Holder& Holder::Certificate(std::wstring commonName, std::wstring serial)
{
    certificates.push_back(Identity{std::move(commonName), std::move(serial)});
    return *this;
}

Holder& Holder::Opposition(std::wstring value)
{
    opposition = std::move(value);
    return *this;
}

Contract& Contract::AloneBy(std::wstring holderId)
{
    Rule rule;
    rule.huid1 = std::move(holderId);
    rule.alone = 1;
    rules.push_back(std::move(rule));
    return *this;
}

Contract& Contract::By(std::wstring firstHolderId, std::wstring secondHolderId)
{
    Rule rule;
    rule.huid1 = std::move(firstHolderId);
    rule.huid2 = std::move(secondHolderId);
    rules.push_back(std::move(rule));
    return *this;
}

Contract& Contract::UpTo(std::wstring amount)
{
    rules.back().amount = std::move(amount);
    return Level(0);
}

Contract& Contract::OrdersUpTo(std::wstring amount)
{
    rules.back().amount = std::move(amount);
    return Level(1);
}

Contract& Contract::Level(int tlevel)
{
    rules.back().tlevel = tlevel;
    return *this;
}

Contract& Contract::DoubleSignature()
{
    return Profile(1);
}

Contract& Contract::Profile(int value)
{
    profile = value;
    return *this;
}

Contract& Contract::AllHolders()
{
    allHolders = 1;
    return *this;
}

Contract& Contract::Opposition(std::wstring value)
{
    opposition = std::move(value);
    return *this;
}

Contract& Contract::WithoutRules()
{
    rulesKnown = false;
    return *this;
}

Bank& Bank::With(const Holder& holder)
{
    const auto text = [this](const std::wstring& value) { return m_database.Literal(value); };
    m_database.Execute(L"INSERT INTO SSR_HOLDER (HUID, VPNAME, FNAME, LNAME, OPPOSITION) VALUES (" +
                       text(holder.huid) + L", " + text(holder.vpname) + L", " +
                       text(holder.firstName) + L", " + text(holder.lastName) + L", " +
                       text(holder.opposition) + L")");
    for (const Holder::Identity& identity : holder.certificates)
    {
        m_database.Execute(L"INSERT INTO SSR_HOLDERID (HUID, CN, SERIAL, EXPIRDATE) VALUES (" +
                           text(holder.huid) + L", " + text(identity.commonName) + L", " +
                           text(identity.serial) + L", '2099-12-31')");
    }
    return *this;
}

Bank& Bank::With(const Contract& contract)
{
    const auto text = [this](const std::wstring& value) { return m_database.Literal(value); };
    const auto number = [](int value) { return std::to_wstring(value); };
    const std::wstring names = text(contract.cuid) + L", " + text(contract.vpname) + L", " +
                               text(contract.vfname) + L", " + text(contract.vcname) + L", " +
                               number(contract.protocol) + L", " + number(contract.server);
    const std::wstring state = number(contract.allHolders) + L", " + text(contract.opposition);
    m_database.Execute(L"INSERT INTO SSR_CONTRACT (CUID, VPNAME, VFNAME, VCNAME, PTC, SERVER, "
                       L"ALLHOLDERS, OPPOSITION) VALUES (" +
                       names + L", " + state + L")");
    if (!contract.rulesKnown || contract.rules.empty())
    {
        return *this;
    }
    m_database.Execute(L"INSERT INTO SSR_CONTRACTCUR (CUID, VPNAME, VFNAME, VCNAME, PROTOCOL, "
                       L"SERVER, ALLHOLDERS, OPPOSITION, TYPE, PROFILE) VALUES (" +
                       names + L", " + state + L", " + number(contract.type) + L", " +
                       number(contract.profile) + L")");
    for (const Rule& rule : contract.rules)
    {
        m_database.Execute(L"INSERT INTO SSR_CONTRACTRULE (CUID, HUID1, HUID2, ALONE, AMOUNT, "
                           L"TLEVEL) VALUES (" +
                           text(contract.cuid) + L", " + text(rule.huid1) + L", " +
                           text(rule.huid2) + L", " + number(rule.alone) + L", " +
                           text(rule.amount) + L", " + number(rule.tlevel) + L")");
    }
    return *this;
}

} // namespace testing_support
