#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Stands in for port/'s files: the same calls, served from memory. A target that links it runs some
// ten times as often as with files of the system, chooses how much one read gives, so that block
// ends fall everywhere, and makes any one operation fail, as a full disk does.

namespace fuzz
{

/// Forgets all files and every setting below.
void ResetFiles();

/// Puts a file there or replaces it. `path` is the text that the code under test opens.
void PutFile(const std::string& path, std::string_view bytes);
/// The bytes of a file; a missing one is a finding.
const std::string& FileBytes(const std::string& path);
/// The paths of all files, sorted.
std::vector<std::string> FilePaths();

/// The first read of a file gives at most `first` bytes, each later one at most `later`; 0 stands
/// for as many as are asked for.
void LimitReads(std::size_t first, std::size_t later);

/// Makes the operation fail that comes after `count` others: an opening, a read, a write or a
/// renaming. They are counted from ResetFiles on.
void FailAfter(std::uint64_t count);
/// Whether an operation was made to fail.
bool HasFailed();
/// Cuts the file to `size` bytes, under whoever reads it, when `count` operations were done.
void CutAfter(std::uint64_t count, const std::string& path, std::size_t size);
/// Operations since ResetFiles.
std::uint64_t OperationCount();

} // namespace fuzz
