#include "tests/fuzz/memory_files.h"

#include "port/files.h"
#include "tests/fuzz/target.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <utility>

namespace
{

constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

using Bytes = std::shared_ptr<std::string>;

struct OpenFile
{
    Bytes bytes;
    std::size_t next = 0;
    bool reads = false;
    bool readBefore = false;
};

struct Disk
{
    std::map<std::string, Bytes> files;
    std::map<std::intptr_t, OpenFile> open;
    std::intptr_t lastNative = 0;
    std::size_t firstRead = 0;
    std::size_t laterReads = 0;
    std::uint64_t operations = 0;
    std::uint64_t failsAfter = kNever;
    bool hasFailed = false;
    std::uint64_t cutsAfter = kNever;
    std::string cutPath;
    std::size_t cutSize = 0;
};

Disk& TheDisk()
{
    static Disk disk;
    return disk;
}

bool Fail(DWORD error)
{
    SetLastError(error);
    return false;
}

// Counts one operation; false, with the error set, for the one that is to fail.
bool Operate()
{
    Disk& disk = TheDisk();
    if (disk.operations == disk.cutsAfter)
    {
        disk.files[disk.cutPath]->resize(disk.cutSize);
    }
    if (disk.operations++ == disk.failsAfter)
    {
        disk.hasFailed = true;
        return Fail(ERROR_WRITE_FAULT);
    }
    return true;
}

OpenFile& Opened(std::intptr_t native)
{
    const auto found = TheDisk().open.find(native);
    fuzz::Require(found != TheDisk().open.end(), "a file is used that is not open");
    return found->second;
}

} // namespace

namespace fuzz
{

void ResetFiles()
{
    Require(TheDisk().open.empty(), "a file was left open");
    TheDisk() = Disk();
}

void PutFile(const std::string& path, std::string_view bytes)
{
    TheDisk().files[path] = std::make_shared<std::string>(bytes);
}

const std::string& FileBytes(const std::string& path)
{
    const auto found = TheDisk().files.find(path);
    Require(found != TheDisk().files.end(), "no file ", path);
    return *found->second;
}

std::vector<std::string> FilePaths()
{
    std::vector<std::string> paths;
    for (const auto& [path, bytes] : TheDisk().files)
    {
        paths.push_back(path);
    }
    return paths;
}

void LimitReads(std::size_t first, std::size_t later)
{
    TheDisk().firstRead = first;
    TheDisk().laterReads = later;
}

void FailAfter(std::uint64_t count)
{
    TheDisk().failsAfter = count;
}

void CutAfter(std::uint64_t count, const std::string& path, std::size_t size)
{
    TheDisk().cutsAfter = count;
    TheDisk().cutPath = path;
    TheDisk().cutSize = size;
}

bool HasFailed()
{
    return TheDisk().hasFailed;
}

std::uint64_t OperationCount()
{
    return TheDisk().operations;
}

} // namespace fuzz

// The program's definitions come before those of port/'s shared library.

namespace port
{

File::~File()
{
    Close();
}

bool File::Open(const char* path, OpenMode mode)
{
    Close();
    Disk& disk = TheDisk();
    if (!Operate())
    {
        return false;
    }
    const bool exists = disk.files.contains(path);
    if (exists != (mode == OpenMode::Read))
    {
        return Fail(exists ? ERROR_FILE_EXISTS : ERROR_FILE_NOT_FOUND);
    }
    if (!exists)
    {
        disk.files[path] = std::make_shared<std::string>();
    }
    m_native = ++disk.lastNative;
    disk.open[m_native] = {disk.files[path], 0, exists, false};
    return true;
}

bool File::IsOpen() const noexcept
{
    return m_native >= 0;
}

std::int64_t File::Read(void* buffer, std::size_t size)
{
    OpenFile& file = Opened(m_native);
    if (!Operate())
    {
        return -1;
    }
    const std::size_t limit = file.readBefore ? TheDisk().laterReads : TheDisk().firstRead;
    file.readBefore = true;
    const std::size_t asked = limit == 0 ? size : std::min(size, limit);
    const std::size_t left = file.bytes->size() - std::min(file.next, file.bytes->size());
    const std::size_t got = std::min(asked, left);
    std::memcpy(buffer, file.bytes->data() + file.next, got);
    file.next += got;
    return static_cast<std::int64_t>(got);
}

bool File::Write(const void* bytes, std::size_t size)
{
    OpenFile& file = Opened(m_native);
    fuzz::Require(!file.reads, "a file opened for reading is written");
    if (!Operate())
    {
        return false;
    }
    file.bytes->append(static_cast<const char*>(bytes), size);
    return true;
}

std::int64_t File::Size() const
{
    return static_cast<std::int64_t>(Opened(m_native).bytes->size());
}

void File::Close() noexcept
{
    TheDisk().open.erase(std::exchange(m_native, -1));
}

bool MoveFileReplacing(const char* from, const char* to)
{
    Disk& disk = TheDisk();
    if (!Operate())
    {
        return false;
    }
    const auto found = disk.files.find(from);
    if (found == disk.files.end())
    {
        return Fail(ERROR_FILE_NOT_FOUND);
    }
    disk.files[to] = found->second;
    disk.files.erase(from);
    return true;
}

} // namespace port

BOOL DeleteFileA(LPCSTR path)
{
    return TheDisk().files.erase(path) != 0 || Fail(ERROR_FILE_NOT_FOUND) ? 1 : 0;
}
