#pragma once

#include "tests/model/expected.h"
#include "tests/model/tables.h"
#include "tests/testing/temporary_folder.h"
#include "tests/testing/test_database.h"

#include <string>
#include <vector>

namespace model
{

/// A real database that holds one world after the other, and the folders that the library writes
/// to meanwhile.
class RealBank
{
public:
    RealBank();

    const std::string& ConnexionString() const { return m_database.ConnexionString(); }
    std::string StoreFolder() const { return m_folder.Path("handoff"); }
    std::string SpoolFolder() const { return m_folder.Path("spool"); }
    std::string TraceFile() const { return m_folder.Path("trace.txt"); }

    /// Empties every table and fills those of the rules.
    void Load(const Tables& tables);
    /// Takes the journal's table away, and puts it back.
    void HideJournal();
    void ShowJournal();

    /// What was written since Load; a time that is not of these minutes becomes a problem.
    void ReadHistory(Results& results);
    void ReadJournal(Results& results);

    /// The statements that fill the tables, for a reproduction by hand.
    static std::vector<std::wstring> Statements(const Tables& tables);

private:
    // Reports and waiting events are flushed to disk; in memory that costs nothing.
    testing_support::ScopedEnvironment m_memory;
    testing_support::TemporaryFolder m_folder;
    testing_support::ScopedEnvironment m_spool;
    testing_support::ScopedEnvironment m_handOff;
    testing_support::ScopedEnvironment m_language;
    testing_support::TestDatabase m_database;
};

} // namespace model
