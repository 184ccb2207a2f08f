#pragma once

#include "signutils/signutils.h"
#include "tests/testing/bank.h"
#include "tests/testing/temporary_folder.h"
#include "tests/testing/test_database.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace testing_support
{

/// One entry of the event journal; no value is NULL.
struct JournalEntry
{
    std::wstring source;
    std::wstring level;
    std::optional<std::wstring> reference;
    std::optional<std::wstring> aux1;
    std::optional<std::wstring> aux2;
    std::wstring text;
    std::wstring attachKind; ///< NULL reads as empty
    std::wstring attachPath;
};

std::vector<JournalEntry> ReadJournal(TestDatabase& database);

/// The message of an audit text: what stands behind its header.
std::wstring MessageOf(const JournalEntry& entry);

/// All files below a folder, as paths relative to it with '/', sorted.
std::vector<std::string> FilesBelow(const std::string& folder);

/// A trace file, open while the object lives.
class TraceFile
{
public:
    TraceFile();
    ~TraceFile();
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    void* Handle() const noexcept { return m_handle; }
    /// Closes the trace and gives its text.
    std::string Close();

private:
    TemporaryFolder m_folder;
    void* m_handle;
};

/// Whether one line of a trace holds the label and, behind it, the value.
::testing::AssertionResult HasTraceLine(const std::string& trace, const std::string& label,
                                        const std::string& value);

/// A bank with one contract: H1 (certificate "Ana Ruiz") signs alone, up to 1000.00; spool and
/// hand-off store lie in folders of the test's own.
class SessionTest : public ::testing::Test
{
protected:
    SessionTest();
    ~SessionTest() override;

    /// The contract's side of a session: connection, contract, message, amounts 100.00 / 100.00.
    void Prepare(SignUtils& session, int serverMode = 1);

    std::string HandOffFolder() const { return m_folder.Path("handoff"); }
    std::string SpoolFolder() const { return m_folder.Path("spool"); }
    /// The text of the one report in the hand-off store.
    std::string OnlyReport() const;

    TemporaryFolder m_folder;
    ScopedEnvironment m_spool;
    ScopedEnvironment m_handOff;
    ScopedEnvironment m_language;
    TestDatabase m_database;
};

inline constexpr unsigned long kSuccess = 1;
inline constexpr unsigned long kRefused = 2;
inline constexpr unsigned long kNoRule = 0;

} // namespace testing_support
