#pragma once

#include <cstdint>

/// One file announced to the file hand-off service; zero-fill before use. The identifiers fill
/// their fields without a NUL when they have 8 characters.
struct tagADDFILE
{
    char partner[8];
    char service[8];
    std::uint16_t fileKind;    ///< 4 "hac", 1 "ptk", 2 any other
    std::uint32_t flag;        ///< always 1
    std::int64_t creationTime; ///< seconds since 1970-01-01 UTC
    char filePath[260];
    char secondFilePath[260]; ///< the same path again
};
