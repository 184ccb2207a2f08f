#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace port
{

/// One line of a section that is neither blank nor a comment, blanks removed.
struct ProfileLine
{
    std::string key;   ///< the whole line when it has no '='
    std::string value; ///< quotes kept
    bool hasValue = false;
};

struct ProfileSection
{
    std::string name;
    std::vector<ProfileLine> lines;
};

/// The sections in the order of the file, those of a repeated name included. Lines before the
/// first section belong to none.
std::vector<ProfileSection> ParseProfile(std::string_view bytes);

/// The first section, the first key of that name; null when there is none.
const ProfileSection* FindSection(const std::vector<ProfileSection>& sections,
                                  std::string_view name);
const ProfileLine* FindKey(const ProfileSection& section, std::string_view key);

/// Without one pair of equal quotes around it.
std::string_view WithoutQuotes(std::string_view text);

/// Reads and parses the file. False, with the last error set, when it cannot be read. `path` is
/// Windows-1252.
bool ReadProfile(const char* path, std::vector<ProfileSection>& sections);

} // namespace port
