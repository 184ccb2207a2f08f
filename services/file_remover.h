#pragma once

#include "port/files.h"
#include "port/kernel.h"

#include <string>
#include <utility>

namespace services
{

/// Deletes a file at the end of the scope, on every way out, unless it was kept. Declare it before
/// whatever opens the file: an open file cannot be deleted on Windows.
class FileRemover
{
public:
    explicit FileRemover(std::string path) : m_path(std::move(path)) {}
    ~FileRemover()
    {
        if (!m_path.empty())
        {
            // Whoever leaves because of a failure still reads its reason.
            const DWORD reason = GetLastError();
            DeleteFileA(m_path.c_str());
            SetLastError(reason);
        }
    }
    FileRemover(const FileRemover&) = delete;
    FileRemover& operator=(const FileRemover&) = delete;

    void Keep() noexcept { m_path.clear(); }

private:
    std::string m_path;
};

} // namespace services
