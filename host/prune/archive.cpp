#include "host/prune/archive.h"

#include "host/refusal.h"
#include "host/text.h"
#include "support/codepage.h"

#include <utility>
#include <vector>

namespace prune
{

namespace
{

constexpr std::size_t kBlock = 65536;

// Hands the file's bytes over block by block.
void ReadBlocks(const std::string& path, const std::function<void(std::string_view)>& take)
{
    port::File file;
    std::int64_t count = file.Open(path.c_str(), port::OpenMode::Read) ? 1 : -1;
    std::vector<char> block(kBlock);
    while (count > 0)
    {
        count = file.Read(block.data(), block.size());
        if (count > 0)
        {
            take({block.data(), static_cast<std::size_t>(count)});
        }
    }
    if (count < 0)
    {
        throw host::Refusal(host::kCouldNotRun, "the file " + host::QuotedPath(path) +
                                                    " cannot be read. Check its rights and the "
                                                    "disk, then run the same command again.");
    }
}

std::string DigestOf(const std::string& path)
{
    services::Sha256 sum;
    ReadBlocks(path, [&sum](std::string_view block) { sum.Add(block); });
    return sum.Hex();
}

} // namespace

ArchiveWriter::ArchiveWriter(std::string folder, std::string name)
    : m_folder(std::move(folder)), m_unfinished(port::JoinPath(m_folder, name + kUnfinished))
{
    m_entry.name = std::move(name);
    DeleteFileA(m_unfinished.c_str());
    if (!m_file.Open(m_unfinished.c_str(), port::OpenMode::CreateNew))
    {
        RefuseWriting();
    }
}

void ArchiveWriter::RefuseWriting() const
{
    throw host::Refusal(host::kCouldNotRun, "the file " + host::QuotedPath(m_unfinished) +
                                                " cannot be written. Make room, or give the user "
                                                "the right to write there. Nothing was removed.");
}

void ArchiveWriter::AddRow(std::string_view bytes)
{
    Add(bytes);
    ++m_entry.rows;
}

void ArchiveWriter::Add(std::string_view bytes)
{
    m_sum.Add(bytes);
    m_entry.bytes += bytes.size();
    m_buffer += bytes;
    if (m_buffer.size() >= kBlock)
    {
        WriteBuffer();
    }
}

void ArchiveWriter::WriteBuffer()
{
    if (!m_file.Write(m_buffer.data(), m_buffer.size()))
    {
        RefuseWriting();
    }
    m_buffer.clear();
}

ArchivedFile ArchiveWriter::Finish()
{
    WriteBuffer();
    if (!m_file.Flush())
    {
        RefuseWriting();
    }
    m_file.Close();
    const std::string path = port::JoinPath(m_folder, m_entry.name);
    if (!port::MoveFileReplacing(m_unfinished.c_str(), path.c_str()) ||
        !port::FlushFolder(m_folder.c_str()))
    {
        RefuseWriting();
    }
    m_entry.sha256 = m_sum.Hex();
    return m_entry;
}

std::string ReadLines(const std::string& path, const std::function<void(const std::string&)>& take)
{
    services::Sha256 sum;
    std::string line;
    ReadBlocks(path,
               [&](std::string_view block)
               {
                   sum.Add(block);
                   for (std::size_t end = block.find('\n'); end != std::string_view::npos;
                        end = block.find('\n'))
                   {
                       line += block.substr(0, end);
                       block.remove_prefix(end + 1);
                       take(line);
                       line.clear();
                   }
                   line += block;
               });
    return sum.Hex();
}

void Verify(const std::string& folder, const ArchivedFile& entry)
{
    const std::string path = port::JoinPath(folder, entry.name);
    if (DigestOf(path) != entry.sha256)
    {
        throw host::Refusal(host::kCouldNotRun,
                            "the file " + host::QuotedPath(path) +
                                " is not what was written: its digest differs from " +
                                entry.sha256 +
                                ". Check the disk, and name another folder with --export. Nothing "
                                "was removed.");
    }
}

} // namespace prune
