#pragma once

#include "port/files.h"
#include "port/kernel.h"

namespace services
{

/// Deletes a file at the end of the scope, on every way out, unless it was kept. Declare it before
/// whatever opens the file: an open file cannot be deleted on Windows. The path is borrowed, so
/// that no want of memory stands between a file and its remover; it must outlive the scope.
class FileRemover
{
public:
    explicit FileRemover(const char* path) noexcept : m_path(path) {}
    ~FileRemover()
    {
        if (m_path != nullptr)
        {
            // Whoever leaves because of a failure still reads its reason.
            const DWORD reason = GetLastError();
            DeleteFileA(m_path);
            SetLastError(reason);
        }
    }
    FileRemover(const FileRemover&) = delete;
    FileRemover& operator=(const FileRemover&) = delete;

    void Keep() noexcept { m_path = nullptr; }

private:
    const char* m_path;
};

} // namespace services
