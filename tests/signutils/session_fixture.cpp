#include "tests/signutils/session_fixture.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace testing_support
{

std::vector<JournalEntry> ReadJournal(TestDatabase& database)
{
    std::vector<JournalEntry> entries;
    for (const Row& row :
         database.Query(L"SELECT SOURCE, LEVEL, REFERENCE, AUX1, AUX2, TEXT, ATTACHKIND, "
                        L"ATTACHPATH FROM EVT_JOURNAL ORDER BY EVENTID"))
    {
        entries.push_back({row[0].value_or(L""), row[1].value_or(L""), row[2], row[3], row[4],
                           row[5].value_or(L""), row[6].value_or(L""), row[7].value_or(L"")});
    }
    return entries;
}

std::wstring MessageOf(const JournalEntry& entry)
{
    const std::wstring endOfHeader = L"\r\n\r\n";
    const std::size_t position = entry.text.find(endOfHeader);
    return position == std::wstring::npos ? entry.text
                                          : entry.text.substr(position + endOfHeader.size());
}

std::vector<std::string> FilesBelow(const std::string& folder)
{
    std::vector<std::string> files;
    if (!std::filesystem::exists(folder))
    {
        return files;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    {
        if (entry.is_regular_file())
        {
            files.push_back(std::filesystem::relative(entry.path(), folder).generic_string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

TraceFile::TraceFile() : m_handle(TraceOpen(m_folder.Path("trace.txt").c_str()))
{
    EXPECT_TRUE(TraceIsUsable(m_handle));
}

TraceFile::~TraceFile()
{
    TraceClose(m_handle);
}

std::string TraceFile::Close()
{
    TraceClose(m_handle);
    m_handle = nullptr;
    return ReadWholeFile(m_folder.Path("trace.txt"));
}

::testing::AssertionResult HasTraceLine(const std::string& trace, const std::string& label,
                                        const std::string& value)
{
    std::istringstream lines(trace);
    std::string line;
    while (std::getline(lines, line))
    {
        const std::size_t position = line.find(label);
        if (position != std::string::npos &&
            line.find(value, position + label.size()) != std::string::npos)
        {
            return ::testing::AssertionSuccess();
        }
    }
    return ::testing::AssertionFailure()
           << "no line with '" << label << "' and '" << value << "' in:\n"
           << trace;
}

SessionTest::SessionTest()
    : m_spool("SIGNUTILS_SPOOL", SpoolFolder().c_str()),
      m_handOff("SIGNUTILS_HANDOFF", HandOffFolder().c_str()), m_language("SIGNUTILS_LANG", "en")
{
    TProtocolCatalogue::Register(9, "Test protocol");
    Bank(m_database)
        .With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"))
        .With(Contract(L"C1").AloneBy(L"H1").UpTo(L"1000.00"));
}

SessionTest::~SessionTest()
{
    TProtocolCatalogue::Register(9, nullptr);
}

void SessionTest::Prepare(SignUtils& session, int serverMode)
{
    session.SetConnexionString(m_database.ConnexionString().c_str());
    session.SetContractInfo(1, 9, "PARTNER1", "SERVICE1", "CLIENT1", serverMode, "");
    session.SetMessageInfo("BANKFRPP", "ORDER0001", "pain.001.001.03", "MSG-1");
    session.SetAmountInfo(100.00, 100.00, "EUR");
    session.SetIdFileVfs(7);
}

std::string SessionTest::OnlyReport() const
{
    std::vector<std::string> reports;
    for (const std::string& file : FilesBelow(HandOffFolder()))
    {
        if (std::filesystem::path(file).extension() == ".psr")
        {
            reports.push_back(file);
        }
    }
    EXPECT_EQ(reports.size(), 1U);
    return reports.empty() ? "" : ReadWholeFile(HandOffFolder() + "/" + reports.front());
}

} // namespace testing_support
