#pragma once

#include "host/listing/record.h"
#include "host/listing/writer.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace listing
{

/// Takes the rows of one listing until its page is full. A page begins below a number, not behind a
/// count of rows, so that rows added meanwhile move none from one page to the next.
class Pager
{
public:
    /// Reads --below, --limit and --all; raises UsageRefusal. `command` names the command in the
    /// one that shows the next page. Values and shape must outlive it.
    Pager(std::string command, const host::OptionValues& values, const Shape& shape);

    /// The number below which rows are wanted; none: from the newest on.
    std::optional<std::int64_t> Below() const noexcept { return m_below; }

    /// Prints a row that fits; false, and the row is of the next page, when this one is full. Rows
    /// of one number stand on one page, however many they are.
    bool Take(std::int64_t number, const Record& record);

    /// Prints what `feed` takes; returns the exit status. A Refusal within printed rows is told
    /// among them, as their format allows.
    int Run(const std::function<void(Pager&)>& feed);

private:
    std::string m_command;
    const host::OptionValues& m_values;
    std::unique_ptr<Writer> m_writer;
    std::optional<std::int64_t> m_below;
    std::size_t m_limit;
    std::size_t m_taken = 0;
    std::int64_t m_last = 0;
    bool m_hasMore = false;
};

} // namespace listing
