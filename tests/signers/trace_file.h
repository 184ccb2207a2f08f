#pragma once

#include "tests/testing/temporary_folder.h"

#include <string>

namespace testing_support
{

/// A trace in a file of its own.
class TraceFile
{
public:
    TraceFile();
    ~TraceFile();
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    void* Handle() const noexcept { return m_handle; }

    /// Closes the trace and gives what was written, without the time stamps: "[TITLE]" for a
    /// section, "label|value" for a value, a line each.
    std::string Lines();
    /// How often a line stands in the trace.
    int Count(const std::string& line);
    bool Has(const std::string& line) { return Count(line) > 0; }

private:
    void Close();

    TemporaryFolder m_folder;
    std::string m_path;
    void* m_handle;
};

} // namespace testing_support
