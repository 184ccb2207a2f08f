#pragma once

#include "port/files.h"

#include <cstddef>
#include <string>
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

    /// Replaces `line` by the next line, its line feed included, and says whether a further line
    /// follows it. At the end of the file the line is empty.
    bool ReadLine(std::string& line);
    /// Passes over what is left of the line and says whether a further line follows. Needs no
    /// memory: for a line that had none.
    bool FinishLine();

    /// Whether reading failed; the file then seems to end there.
    bool HasFailed() const noexcept { return m_failed; }

    void Close() noexcept;

private:
    bool LoadBlock();
    bool AtEnd();

    port::File m_file;
    std::vector<char> m_block;
    std::size_t m_next = 0; // first byte of the block not yet given
    std::size_t m_end = 0;  // bytes of the block that count
    bool m_fileEnded = true;
    bool m_failed = false;
};

} // namespace amounts
