#pragma once

#include "port/files.h"
#include "services/sha256.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace prune
{

/// One file of an archive, as the manifest has it.
struct ArchivedFile
{
    std::string name; ///< within the archive's folder
    std::uint64_t rows = 0;
    std::uint64_t bytes = 0;
    std::string sha256;
};

/// What a file of an archive is called by until it is whole.
constexpr const char* kUnfinished = ".part";

/// Writes one file of an archive. It has its name once it is whole and on the disk; until then, and
/// for good after a failure, it is called NAME.part. Every step raises Refusal with kCouldNotRun.
class ArchiveWriter
{
public:
    /// `folder` is Windows-1252 and must be there; a file of an earlier attempt is replaced.
    ArchiveWriter(std::string folder, std::string name);

    void AddRow(std::string_view bytes);
    void Add(std::string_view bytes);

    ArchivedFile Finish();

private:
    void WriteBuffer();
    [[noreturn]] void RefuseWriting() const;

    std::string m_folder;
    ArchivedFile m_entry;
    std::string m_unfinished;
    port::File m_file;
    services::Sha256 m_sum;
    std::string m_buffer;
};

/// Hands each line, without its line feed, to `take`, and gives the digest of all bytes. Raises
/// Refusal with kCouldNotRun when the file cannot be read.
std::string ReadLines(const std::string& path, const std::function<void(const std::string&)>& take);

/// Reads a file of the archive again. Raises Refusal when it is not what was written.
void Verify(const std::string& folder, const ArchivedFile& entry);

} // namespace prune
