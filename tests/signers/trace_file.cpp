#include "tests/signers/trace_file.h"

#include "support/trace.h"

#include <sstream>

namespace testing_support
{

namespace
{

// "[2026-03-29 14:05:09.123 +0 ms] TITLE" is a section, "label: value" a value.
std::string WithoutTimes(const std::string& line)
{
    const std::string endOfTimes = " ms] ";
    if (const std::size_t end = line.find(endOfTimes);
        line.starts_with("[") && end != std::string::npos)
    {
        return "[" + line.substr(end + endOfTimes.size()) + "]";
    }
    const std::size_t colon = line.find(": ");
    return colon == std::string::npos ? line : line.substr(0, colon) + "|" + line.substr(colon + 2);
}

} // namespace

TraceFile::TraceFile() : m_path(m_folder.Path("trace.txt")), m_handle(TraceOpen(m_path.c_str())) {}

TraceFile::~TraceFile()
{
    Close();
}

std::string TraceFile::Lines()
{
    Close();
    std::istringstream written(ReadWholeFile(m_path));
    std::string lines;
    for (std::string line; std::getline(written, line);)
    {
        lines += WithoutTimes(line) + "\n";
    }
    return lines;
}

int TraceFile::Count(const std::string& line)
{
    std::istringstream lines(Lines());
    int count = 0;
    for (std::string each; std::getline(lines, each);)
    {
        count += each == line ? 1 : 0;
    }
    return count;
}

void TraceFile::Close()
{
    TraceClose(m_handle);
    m_handle = nullptr;
}

} // namespace testing_support
