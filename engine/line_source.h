#pragma once

#include "engine/order_file.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace engine
{

/// The lines or fixed-length records of an order file, in constant memory. 0x1A ends the file; a
/// byte order mark at its start is passed over.
class LineSource
{
public:
    explicit LineSource(OrderFile& file) : m_file(file) {}

    /// The next line without its line end (LF or CR LF). False at the end. A line longer than
    /// `longest` raises engine::Failure.
    bool NextLine(std::string& line, std::size_t longest);

    /// The next `length` bytes, line ends between records passed over; the last may be shorter.
    /// False at the end.
    bool NextRecord(std::string& record, std::size_t length);

    /// Whether a line end stands within the first `count` bytes of what is left of the first block.
    bool HasLineEndWithin(std::size_t count);

    /// Whether anything but padding stands behind the end-of-file character, where nothing is read.
    /// To be asked at the end.
    bool HasTextBehindEnd();

    /// Number of the line or record given last, from 1.
    std::uint64_t Number() const noexcept { return m_number; }

private:
    bool Load();

    OrderFile& m_file;
    std::string_view m_block;
    std::string_view m_behindMark;
    bool m_atStart = true;
    bool m_ended = false;
    bool m_marked = false;
    std::uint64_t m_number = 0;
};

} // namespace engine
