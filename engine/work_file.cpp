#include "engine/work_file.h"

#include "engine/failure.h"
#include "engine/quoted_row.h"
#include "port/environment.h"
#include "support/format.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace engine
{

namespace
{

constexpr std::size_t kBufferSize = std::size_t{64} * 1024;
constexpr std::size_t kColumnWidth = 16;
constexpr std::string_view kLineEnd = "\r\n";

std::string TemporaryName(const std::string& finalPath)
{
    std::uint64_t random = 0;
    port::RandomBytes(&random, sizeof random);
    const std::array<unsigned int, 2> halves = {static_cast<unsigned int>(random >> 32U),
                                                static_cast<unsigned int>(random)};
    return finalPath + support::FormatA(".%08x%08x.part", halves[0], halves[1]);
}

} // namespace

WorkFile::WorkFile(std::string finalPath, HeaderKind kind,
                   std::initializer_list<std::string_view> columns)
    : m_finalPath(std::move(finalPath)), m_temporaryPath(TemporaryName(m_finalPath))
{
    m_buffer.reserve(kBufferSize);
    if (!m_file.Open(m_temporaryPath.c_str(), port::OpenMode::CreateNew))
    {
        Fail("create");
    }
    m_onDisk = true;
    WriteHeader(kind, columns);
}

WorkFile::~WorkFile()
{
    m_file.Close();
    if (m_onDisk)
    {
        DeleteFileA(m_temporaryPath.c_str());
    }
}

void WorkFile::WriteHeader(HeaderKind kind, std::initializer_list<std::string_view> columns)
{
    if (kind == HeaderKind::None)
    {
        return;
    }
    std::string names;
    std::string widths;
    for (const std::string_view column : columns)
    {
        const std::string_view separator = names.empty() ? "" : ";";
        names.append(separator).append(column);
        widths.append(separator).append(std::to_string(kColumnWidth));
    }
    Line(names);
    if (kind == HeaderKind::FourLines)
    {
        Line(widths);
        Row(columns);
        Line(std::string(columns.size() * kColumnWidth, '-'));
    }
}

void WorkFile::Row(std::initializer_list<std::string_view> fields)
{
    AppendQuotedRow(m_buffer, fields);
    m_buffer += kLineEnd;
    FlushWhenFull();
}

void WorkFile::Line(std::string_view text)
{
    m_buffer += text;
    m_buffer += kLineEnd;
    FlushWhenFull();
}

void WorkFile::FlushWhenFull()
{
    if (m_buffer.size() >= kBufferSize)
    {
        WriteBuffer();
    }
}

void WorkFile::WriteBuffer()
{
    if (!m_file.Write(m_buffer.data(), m_buffer.size()))
    {
        Fail("write");
    }
    m_buffer.clear();
}

void WorkFile::Complete()
{
    WriteBuffer();
    m_file.Close();
}

void WorkFile::Publish()
{
    if (!port::MoveFileReplacing(m_temporaryPath.c_str(), m_finalPath.c_str()))
    {
        Fail("rename");
    }
    m_onDisk = false;
}

void WorkFile::Withdraw() noexcept
{
    DeleteFileA(m_finalPath.c_str());
}

void WorkFile::Fail(const char* attempt) const
{
    const DWORD reason = GetLastError();
    const std::size_t end = m_finalPath.find_last_of("/\\");
    const std::size_t name = end == std::string::npos ? 0U : end + 1U;
    const std::string folder = name == 0U ? std::string(".") : m_finalPath.substr(0, name);
    throw Failure(FailureNumber::OutputUnwritable,
                  support::FormatA("Cannot %s work file %s in folder %s (error %u): the folder "
                                   "must be writable and have space left",
                                   attempt, m_finalPath.substr(name).c_str(), folder.c_str(),
                                   reason));
}

} // namespace engine
