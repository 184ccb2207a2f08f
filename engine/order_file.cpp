#include "engine/order_file.h"

#include "engine/failure.h"
#include "support/codepage.h"
#include "support/format.h"

#include <utility>

namespace engine
{

namespace
{

constexpr std::size_t kBlockSize = std::size_t{64} * 1024;
// Within so many bytes the first part of a message tells its kind.
constexpr std::size_t kPartHeader = 1024;

// A caller keeps 255 characters of a message: what is wrong, and where, must be among them.
constexpr std::size_t kLongestShownPath = 120;

std::string Shown(const std::string& path)
{
    constexpr std::string_view kLeftOut = "...";
    return path.size() <= kLongestShownPath
               ? path
               : std::string(kLeftOut) +
                     path.substr(path.size() - (kLongestShownPath - kLeftOut.size()));
}

port::FileIdentity Identify(const std::string& path)
{
    return port::IdentifyFile(support::Utf8FromNarrow(path));
}

} // namespace

OrderFile::OrderFile(std::string path)
    : m_path(std::move(path)), m_shownPath(Shown(m_path)), m_block(kBlockSize)
{
    if (!m_file.Open(m_path.c_str(), port::OpenMode::Read))
    {
        throw Failure(FailureNumber::InputUnreadable,
                      support::FormatA("Cannot read order file %s (error %u)", m_shownPath.c_str(),
                                       GetLastError()));
    }
    m_identity = Identify(m_path);
    m_sizeAtStart = m_file.Size();
}

std::string_view OrderFile::NextBlock()
{
    const std::int64_t size = m_file.Read(m_block.data(), m_block.size());
    if (size < 0)
    {
        throw Failure(FailureNumber::InputUnreadable,
                      support::FormatA("Reading order file %s failed after %I64d bytes (error %u)",
                                       m_shownPath.c_str(), static_cast<long long>(m_sizeRead),
                                       GetLastError()));
    }
    const std::string_view block(m_block.data(), static_cast<std::size_t>(size));
    if (m_sizeRead == 0)
    {
        RefuseSeveralParts(block);
    }
    m_sizeRead += size;
    m_ended = block.empty();
    return block;
}

void OrderFile::RefuseSeveralParts(std::string_view start) const
{
    const std::string_view header = start.substr(0, kPartHeader);
    const bool boundary =
        header.starts_with("--") && header.find("\nContent-") != std::string_view::npos;
    if (boundary || header.starts_with("MIME-Version:") || header.starts_with("Content-Type:"))
    {
        throw Failure(FailureNumber::NotThisFormat,
                      support::FormatA("Order file %s is a message in several parts: give the part "
                                       "that is the order file",
                                       m_shownPath.c_str()));
    }
}

void OrderFile::CheckUnchanged() const
{
    // Text formats may stop before the end, at an end-of-file character.
    const bool readAll = !m_ended || m_sizeRead == m_sizeAtStart;
    if (m_file.Size() != m_sizeAtStart || !readAll || !(Identify(m_path) == m_identity))
    {
        throw Failure(
            FailureNumber::InputChanged,
            support::FormatA("Order file %s was changed while it was read: %I64d bytes at "
                             "the start, %I64d read; convert it again once it is complete",
                             m_shownPath.c_str(), static_cast<long long>(m_sizeAtStart),
                             static_cast<long long>(m_sizeRead)));
    }
}

} // namespace engine
