#pragma once

#include <string>

namespace engine
{

class OrderFile;

/// The works that the engine knows.
enum class Work
{
    Pain001,
    Pain008,
    Cfonb160,
    Cfonb320,
    Mt101,
};

/// Chooses the work of a pair of format texts, e.g. "CFONB" and "160"; letter case of ASCII letters
/// does not count. False for an unknown pair.
bool FindWork(const std::string& format1, const std::string& format2, Work& work);

enum class ConversionMode
{
    WriteWorkFiles,
    CheckOnly, ///< as far as a failure can be met; nothing is left behind
};

/// Converts the order file into the six work files named from `stem`. Paths are Windows-1252.
/// Raises engine::Failure with nothing left behind.
void Convert(Work work, const std::string& orderFile, const std::string& stem,
             ConversionMode mode = ConversionMode::WriteWorkFiles);
/// The same for a file opened before, of which nothing was read yet.
void Convert(Work work, OrderFile& file, const std::string& stem, ConversionMode mode);

} // namespace engine
