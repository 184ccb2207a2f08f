#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

namespace batch
{

/// What is known of the judgement of one file. Texts are UTF-8.
struct Progress
{
    std::string version; ///< of the file, see VersionOf
    bool isDone = false; ///< else it was begun, and nobody knows how it ended
    long long after = 0; ///< number of the newest history row before it was begun
    long long at = 0;    ///< seconds since 1970 when it was done
    std::string asked;   ///< of what was begun: its contents and terms, see DigestOfAsked
};

// The lines of a progress journal, JSON each, without their ends.

inline constexpr const char* kFirstJournalLine = R"({"signcheck":"progress","version":1})";

std::string LineOfBegun(const std::string& key, const Progress& progress);
std::string LineOfDone(const std::string& key, const Progress& progress,
                       const std::string& outcome);
std::string LineOfGivenUp(const std::string& key);
/// The database that the lines below are about, see DatabaseIdentity.
std::string LineOfDatabase(const std::string& database);

/// What a journal says, up to its last whole line: what a kill cut short was not acknowledged.
struct JournalContent
{
    std::unordered_map<std::string, Progress> known;
    std::string database; ///< empty when none was told
    std::size_t lines = 0;
    std::size_t bytes = 0;  ///< of these lines
    std::size_t faulty = 0; ///< number of the first line that is none of a journal; 0 without one
};

/// Reads up to the first faulty line.
JournalContent ReadJournalLines(const std::string& text);

} // namespace batch
