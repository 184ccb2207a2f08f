#pragma once

#include <cstddef>

namespace schema
{

/// A file of this folder as it stood when the library was built.
struct EmbeddedFile
{
    const char* folder;
    const wchar_t* name; ///< without its ending
    const wchar_t* text;
};

/// Sorted by folder and name; written by embed_files.cmake.
extern const EmbeddedFile kEmbeddedFiles[];
extern const std::size_t kEmbeddedFileCount;

} // namespace schema
