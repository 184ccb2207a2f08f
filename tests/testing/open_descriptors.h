#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace testing_support
{

/// What this process has open, counted by the file system of descriptors, which Windows does not
/// have.
inline std::ptrdiff_t OpenDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/dev/fd"),
                         std::filesystem::directory_iterator());
}

} // namespace testing_support
