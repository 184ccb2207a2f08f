#pragma once

// Files and folders. Paths are Windows-1252 texts; one function here turns them into the platform's
// own form. Every failure leaves its reason in GetLastError.

#include "port/export.h"
#include "port/kernel.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#if !defined(_WIN32)
/// Removes a file. 0 with ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND (also for an empty name),
/// ERROR_ACCESS_DENIED (a folder, a file without write permission) or ERROR_INVALID_NAME
/// (wildcard). An open file can be removed here, unlike on Windows: close before deleting.
SIGNUTILS_PORT_API BOOL DeleteFileA(LPCSTR path);
#endif

namespace port
{

/// The separator that paths are written with, and whether a character separates path elements.
SIGNUTILS_PORT_API char PathSeparator();
SIGNUTILS_PORT_API bool IsPathSeparator(char character);

/// Folder and name joined by one separator; `folder` empty gives `name`.
SIGNUTILS_PORT_API std::string JoinPath(std::string_view folder, std::string_view name);

enum class OpenMode
{
    Read,                ///< the file must exist
    CreateNew,           ///< must not exist, not even as a link; readable by its owner only
    CreateNewForReaders, ///< as CreateNew, but every user may read it, whatever the umask; on
                         ///< Windows those whom its folder lets
    Append,              ///< created for its owner only when missing; writes go to the end
    AppendNoLink,        ///< as Append, but a link of that name is refused, wherever it leads
};

/// A binary file in blocks. Not shared between threads.
class SIGNUTILS_PORT_API File
{
public:
    File() noexcept = default;
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;

    /// Opens; an open file is closed first.
    [[nodiscard]] bool Open(const char* path, OpenMode mode);
    [[nodiscard]] bool IsOpen() const noexcept;
    /// Bytes read, 0 at the end, -1 on failure; fewer than asked for only at the end.
    [[nodiscard]] std::int64_t Read(void* buffer, std::size_t size);
    /// All bytes or false.
    [[nodiscard]] bool Write(const void* bytes, std::size_t size);
    /// Forces what was written to the disk.
    [[nodiscard]] bool Flush();
    [[nodiscard]] bool Seek(std::int64_t position);
    /// Size in bytes, -1 on failure.
    [[nodiscard]] std::int64_t Size() const;
    [[nodiscard]] bool Truncate(std::int64_t size);
    /// Waits for an exclusive lock between processes and between File objects of one process;
    /// closing gives it back.
    [[nodiscard]] bool LockExclusive();
    void Close() noexcept;

private:
    std::intptr_t m_native = -1;
};

SIGNUTILS_PORT_API bool FileExists(const char* path); ///< a regular file
SIGNUTILS_PORT_API bool FolderExists(const char* path);
/// Size of a regular file in bytes, 0 when there is none; looked up without opening the file.
SIGNUTILS_PORT_API std::int64_t FileSize(const char* path);

/// Moves a file within one volume, replacing the target at once: readers see the old or the new.
[[nodiscard]] SIGNUTILS_PORT_API bool MoveFileReplacing(const char* from, const char* to);
/// As MoveFileReplacing, but fails with ERROR_FILE_EXISTS when the target is there.
[[nodiscard]] SIGNUTILS_PORT_API bool MoveFileNoReplace(const char* from, const char* to);
/// Makes renames and removals in the folder last over a power cut, where the platform needs it.
[[nodiscard]] SIGNUTILS_PORT_API bool FlushFolder(const char* folder);

/// Creates the folder and what is missing above it, for their owner only. A folder that is there is
/// accepted when the current user owns it; another owner gives ERROR_INVALID_OWNER. It keeps the
/// rights that it has, but where every user may write that right is taken back; a folder shared by
/// everybody on purpose, such as /tmp, gives ERROR_INVALID_ACL instead.
[[nodiscard]] SIGNUTILS_PORT_API bool CreatePrivateFolder(const char* folder);
[[nodiscard]] SIGNUTILS_PORT_API bool RemoveEmptyFolder(const char* folder);
/// Whether the current user may create files in the folder.
SIGNUTILS_PORT_API bool IsWritableFolder(const char* folder);

/// Names in the folder (files and folders, no "." and ".."), sorted by byte value. Names without a
/// place in Windows-1252 are left out. False when the folder cannot be read.
[[nodiscard]] SIGNUTILS_PORT_API bool ListFolder(const char* folder,
                                                 std::vector<std::string>& names);

/// The folder for temporary files, without a final separator.
SIGNUTILS_PORT_API std::string TemporaryFolder();
/// The folder of the module that holds port/ (library or program), without a final separator.
SIGNUTILS_PORT_API std::string ModuleFolder();

} // namespace port
