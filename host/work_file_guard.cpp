#include "host/work_file_guard.h"

#include "amounts/work_files.h"
#include "host/text.h"
#include "port/files.h"
#include "support/codepage.h"

#include <utility>

namespace host
{

WorkFileGuard::WorkFileGuard(const std::string& order)
{
    for (const amounts::WorkFileKind& kind : amounts::kWorkFiles)
    {
        std::string path = amounts::WorkFilePath(order.c_str(), kind);
        (port::FileExists(path.c_str()) ? m_before : m_others).push_back(std::move(path));
    }
}

WorkFileGuard::~WorkFileGuard()
{
    for (const std::string& path : m_others)
    {
        DeleteFileA(path.c_str());
    }
}

std::string WorkFileGuard::Warning() const
{
    if (m_before.empty())
    {
        return {};
    }
    std::string names;
    for (const std::string& path : m_before)
    {
        names += (names.empty() ? "" : ", ") + Quoted(support::Utf8FromNarrow(path));
    }
    return "work files of the order file were there already (" + names +
           "), kept by signcheck convert --keep or left by a run that was cut short; the check "
           "replaces and deletes them.";
}

} // namespace host
