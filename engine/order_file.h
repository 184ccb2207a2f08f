#pragma once

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

    /// The next bytes, empty at the end. Valid until the next call.
    std::string_view NextBlock();
    /// Refuses a file whose size is no longer what it was at the start: it was changed meanwhile.
    void CheckUnchanged() const;

    const std::string& Path() const noexcept { return m_path; }

private:
    std::string m_path;
    port::File m_file;
    std::vector<char> m_block;
    std::int64_t m_sizeAtStart = 0;
    std::int64_t m_sizeRead = 0;
};

} // namespace engine
