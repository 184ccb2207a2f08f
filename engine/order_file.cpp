#include "engine/order_file.h"

#include "engine/failure.h"
#include "support/format.h"

#include <utility>

namespace engine
{

namespace
{

constexpr std::size_t kBlockSize = 64U * 1024U;

} // namespace

OrderFile::OrderFile(std::string path) : m_path(std::move(path)), m_block(kBlockSize)
{
    if (!m_file.Open(m_path.c_str(), port::OpenMode::Read))
    {
        throw Failure(FailureNumber::InputUnreadable,
                      support::FormatA("Cannot read order file %s (error %u)", m_path.c_str(),
                                       GetLastError()));
    }
    m_sizeAtStart = m_file.Size();
}

std::string_view OrderFile::NextBlock()
{
    const std::int64_t size = m_file.Read(m_block.data(), m_block.size());
    if (size < 0)
    {
        throw Failure(FailureNumber::InputUnreadable,
                      support::FormatA("Reading order file %s failed after %I64d bytes (error %u)",
                                       m_path.c_str(), static_cast<long long>(m_sizeRead),
                                       GetLastError()));
    }
    m_sizeRead += size;
    return {m_block.data(), static_cast<std::size_t>(size)};
}

void OrderFile::CheckUnchanged() const
{
    if (m_file.Size() != m_sizeAtStart || m_sizeRead != m_sizeAtStart)
    {
        throw Failure(
            FailureNumber::InputChanged,
            support::FormatA("Order file %s was changed while it was read: %I64d bytes at "
                             "the start, %I64d read; convert it again once it is complete",
                             m_path.c_str(), static_cast<long long>(m_sizeAtStart),
                             static_cast<long long>(m_sizeRead)));
    }
}

} // namespace engine
