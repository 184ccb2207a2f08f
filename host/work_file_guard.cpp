#include "host/work_file_guard.h"

#include "host/text.h"
#include "port/files.h"
#include "support/codepage.h"

#include <utility>

namespace host
{

namespace
{

constexpr const char* kEndings[] = {".veu",     ".veu.bp",  ".veu.cp",
                                    ".veu.cp2", ".veu.tot", ".veu.err"};

} // namespace

WorkFileGuard::WorkFileGuard(const std::string& order)
{
    for (const char* const ending : kEndings)
    {
        std::string path = order + ending;
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
