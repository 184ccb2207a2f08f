#pragma once

#include "database/dialect.h"
#include "tests/host/authority/temporary_files_in.h"
#include "tests/host/signcheck_process.h"

#include <string>
#include <vector>

namespace testing_support
{

/// A sample bank with nothing to complain of: store, spool and progress are their owner's only, no
/// copies lie in the folder for temporary files, which is its own.
class DoctorBank : public SampleBankTest
{
protected:
    DoctorBank();

    /// What doctor tells as JSON; `more` follows the command.
    Answer Doctor(const std::vector<std::string>& more = {}) const;
    /// The same on another connection string.
    static Answer DoctorOf(const std::string& connection,
                           const std::vector<std::string>& more = {});

    /// The checks of one name, each as "result: found | remedy".
    static std::vector<std::string> Told(const Answer& answer, const std::string& check);

    database::Product ConnectedProduct() const { return m_product; }
    /// The database file; empty on a server.
    std::string DatabaseFile() const;

    TemporaryFolder m_temporaryFolder;
    TemporaryFilesIn m_temporary;
    ScopedEnvironment m_config;
    ScopedEnvironment m_progress;

private:
    database::Product m_product;
};

} // namespace testing_support
