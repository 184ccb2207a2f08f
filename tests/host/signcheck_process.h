#pragma once

#include "tests/testing/temporary_folder.h"
#include "tests/testing/test_database.h"

#include <gtest/gtest.h>
#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace testing_support
{

/// What one run of signcheck answered.
struct Answer
{
    int status = -1;
    std::string output;
    std::string errors;

    /// Standard output as the one JSON object that it must be.
    nlohmann::json Json() const;
};

/// Runs the built signcheck as a child with these arguments, byte for byte, and waits for it.
Answer RunSigncheck(const std::vector<std::string>& arguments);

/// A sample bank in a database of its own, with hand-off store and spool in a folder of their own.
class SampleBankTest : public testing::Test
{
protected:
    SampleBankTest();

    /// The settings of a check of an order of 900.00 by `signers` on contract C-1001.
    std::vector<std::string> CheckOf(const std::string& signers) const;
    /// The same for another order file, whose amounts are worked out from it.
    std::vector<std::string> CheckOfFile(const std::string& file, const std::string& format,
                                         const std::string& signers) const;
    /// The same without one option and its value.
    static std::vector<std::string> Without(std::vector<std::string> arguments,
                                            const std::string& option);
    /// The same with another value.
    static std::vector<std::string> With(std::vector<std::string> arguments,
                                         const std::string& option, const std::string& value);

    const std::string& Db() const { return m_database.ConnexionString(); }
    /// Writes what the user's settings file says, and returns its path.
    std::string WriteUserSettings(const std::string& toml) const;
    /// Every row of every table.
    std::vector<std::vector<Row>> AllTables();
    /// Rows of history and journal together; 0 after a refusal.
    std::size_t RecordsWritten();

    TemporaryFolder m_folder;
    ScopedEnvironment m_spool;
    ScopedEnvironment m_handOff;
    ScopedEnvironment m_connection;
    ScopedEnvironment m_language;
    ScopedEnvironment m_userSettings;    ///< on POSIX
    ScopedEnvironment m_applicationData; ///< the same on Windows
    TestDatabase m_database;
    std::string m_order;
};

} // namespace testing_support
