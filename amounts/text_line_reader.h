#pragma once

#include "port/files.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace amounts
{

/// Reads a text file line by line, in blocks, with the text-mode meaning that work files are
/// written for: CR LF is a line feed, another CR stays, a bare LF ends a line, 0x1A ends the file.
class TextLineReader
{
public:
    /// False when the file cannot be opened for reading. `path` is Windows-1252.
    [[nodiscard]] bool Open(const char* path);

    /// Finds the next line, its line feed included, and says whether a further line follows it. At
    /// the end of the file the line is empty. The line stays where it is until the reader reads on
    /// or goes away. Raises std::bad_alloc when a line is longer than there is memory for.
    bool ReadLine(std::string_view& line);
    /// Passes over what is left of the line that ReadLine had no memory for and says whether a
    /// further line follows. Needs no memory.
    bool FinishLine();

    /// Whether reading failed; the file then seems to end there.
    bool HasFailed() const noexcept { return m_failed; }

    void Close() noexcept;

private:
    void MakeRoom();
    bool LoadBlock();
    bool AtEnd();
    void PassOver();

    port::File m_file;
    std::vector<char> m_block;
    std::size_t m_line = 0; // where in the block the line starts; bytes from here on are kept
    std::size_t m_next = 0; // first byte of the block not yet passed over
    std::size_t m_end = 0;  // bytes of the block that count
    bool m_lineEnded = false;
    bool m_fileEnded = true;
    bool m_failed = false;
};

} // namespace amounts
