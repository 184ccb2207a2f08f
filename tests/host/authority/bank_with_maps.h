#pragma once

#include "database/cdatabase.h"
#include "host/connection.h"
#include "host/rulebook/rule_book.h"
#include "host/scratch/judge.h"
#include "tests/testing/temporary_folder.h"
#include "tests/testing/test_database.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace testing_support
{

/// A number from the environment, for runs longer than the suite's.
std::uint64_t SettingOr(const char* name, std::uint64_t usual);

/// Leaves a number in the report of the running test, for a run that adds up many.
void Count(const char* what, std::uint64_t number);

/// Rule books in a database of their own, and the library asked on it directly.
class BankWithMaps : public testing::Test
{
protected:
    BankWithMaps();

    /// Puts the book in the place of what is there.
    void Hold(const rulebook::RuleBook& book);

    /// What a check on the database itself decides, under the key of random banks.
    scratch::Decision Decide(const scratch::Order& order, std::int64_t type = 1) const;
    unsigned long Verdict(const std::vector<std::string>& signers, double total, double largest,
                          bool isDistributed, std::int64_t type = 1) const
    {
        return Decide({signers, total, largest, isDistributed}, type).verdict;
    }

    TemporaryFolder m_folder;
    ScopedEnvironment m_spool;
    TestDatabase m_database;
    CDatabase m_source;
    host::Connection m_connection;
};

} // namespace testing_support
