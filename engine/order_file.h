#pragma once

#include "port/file_identity.h"
#include "port/files.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace engine
{

/// The order file, read once from start to end in blocks. Failures raise engine::Failure.
class OrderFile
{
public:
    /// `path` is Windows-1252.
    explicit OrderFile(std::string path);

    /// The next bytes, empty at the end. Valid until the next call. The body of a message in
    /// several parts is refused: the order file is one of them.
    std::string_view NextBlock();
    /// Refuses a file that is no longer what it was at the start: its size differs, or another file
    /// stands in its place.
    void CheckUnchanged() const;

    /// The path as messages show it: the beginning of a long one gives way to "...".
    const std::string& Path() const noexcept { return m_shownPath; }

private:
    void RefuseSeveralParts(std::string_view start) const;

    std::string m_path;
    std::string m_shownPath;
    port::File m_file;
    std::vector<char> m_block;
    port::FileIdentity m_identity;
    std::int64_t m_sizeAtStart = 0;
    std::int64_t m_sizeRead = 0;
    bool m_ended = false;
};

} // namespace engine
