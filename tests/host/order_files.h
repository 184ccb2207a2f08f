#pragma once

#include "tests/host/signcheck_process.h"

#include <string>
#include <vector>

namespace testing_support
{

/// Order files in a folder of their own, with the display configuration of the sources.
class OrderFilesTest : public testing::Test
{
protected:
    OrderFilesTest();

    /// Copies a file of the engine's corpus and returns its path.
    std::string Corpus(const std::string& name) const;
    /// Writes a pain.001 of these groups, each the inside of a PmtInf, and returns its path.
    std::string Transfers(const std::vector<std::string>& groups) const;
    /// The inside of a PmtInf: its reference and its orders' amounts, such as "EUR 10.00".
    static std::string Group(const std::string& reference, const std::vector<std::string>& amounts);

    /// Names in the folder, sorted.
    std::vector<std::string> Names() const;

    TemporaryFolder m_folder;
    ScopedEnvironment m_config;
    ScopedEnvironment m_registry;
};

/// What standard output has behind `"key": `, up to the end of the line and without its comma: the
/// digits of a number as they were printed.
std::string PrintedValue(const std::string& json, const std::string& key);

} // namespace testing_support
