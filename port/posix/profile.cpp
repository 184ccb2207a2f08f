#include "port/profile.h"

#include "port/environment.h"
#include "port/files.h"
#include "port/posix/profile_text.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <vector>

namespace
{

using port::ProfileLine;
using port::ProfileSection;

/// The sections of the named file, none when it cannot be read.
std::vector<ProfileSection> SectionsOf(LPCSTR fileName)
{
    const std::string name = fileName == nullptr ? "" : fileName;
    std::vector<ProfileSection> sections;
    const bool full = !name.empty() && port::IsPathSeparator(name.front());
    const std::string path = full ? name : port::JoinPath(port::SystemConfigurationFolder(), name);
    if (!name.empty() && port::ReadProfile(path.c_str(), sections))
    {
        return sections;
    }
    // A missing folder is told as a missing file.
    if (name.empty() || GetLastError() == ERROR_PATH_NOT_FOUND)
    {
        SetLastError(ERROR_FILE_NOT_FOUND);
    }
    return {};
}

/// What serves when nothing is found: leading blanks stay, trailing ones and one pair of quotes go.
std::string DefaultOf(LPCSTR defaultText)
{
    std::string text = defaultText == nullptr ? "" : defaultText;
    text.erase(text.find_last_not_of(' ') + 1);
    return std::string(port::WithoutQuotes(text));
}

DWORD CopyValue(std::string_view value, LPSTR buffer, DWORD size)
{
    if (size == 0)
    {
        return 0;
    }
    const auto length = static_cast<DWORD>(std::min<std::size_t>(value.size(), size - 1));
    std::memcpy(buffer, value.data(), length);
    buffer[length] = '\0';
    return length;
}

/// Copies texts that each end with a NUL, and one more NUL. `spare` characters must stay free
/// behind them, or the list is cut.
DWORD CopyList(const std::string& list, DWORD spare, LPSTR buffer, DWORD size)
{
    if (size < 2)
    {
        return CopyValue("", buffer, size);
    }
    const bool fits = list.size() + spare <= size;
    const std::size_t length = fits ? list.size() : size - 2;
    std::memcpy(buffer, list.data(), length);
    buffer[length] = '\0';
    if (!fits || list.empty())
    {
        buffer[length + 1] = '\0';
    }
    return static_cast<DWORD>(length);
}

DWORD CopyListOrDefault(const std::string& list, LPCSTR defaultText, LPSTR buffer, DWORD size)
{
    return list.empty() ? CopyValue(DefaultOf(defaultText), buffer, size)
                        : CopyList(list, 1, buffer, size);
}

void AppendName(std::string& list, std::string_view name)
{
    if (!name.empty()) // an empty one would end the list
    {
        list.append(name).push_back('\0');
    }
}

std::string SectionNames(const std::vector<ProfileSection>& sections)
{
    std::string list;
    for (const ProfileSection& section : sections)
    {
        AppendName(list, section.name);
    }
    return list;
}

/// Lines without '=' are no keys.
std::string KeyNames(const ProfileSection& section)
{
    std::string list;
    for (const ProfileLine& line : section.lines)
    {
        AppendName(list, line.hasValue ? line.key : std::string());
    }
    return list;
}

std::string WholeLines(const ProfileSection& section)
{
    std::string list;
    for (const ProfileLine& line : section.lines)
    {
        list += line.key;
        if (line.hasValue)
        {
            list.append("=").append(line.value);
        }
        list.push_back('\0');
    }
    return list;
}

DWORD CopyString(LPCSTR section, LPCSTR key, LPCSTR defaultText, LPSTR buffer, DWORD size,
                 LPCSTR fileName)
{
    const std::vector<ProfileSection> sections = SectionsOf(fileName);
    if (section == nullptr)
    {
        return CopyListOrDefault(SectionNames(sections), defaultText, buffer, size);
    }
    const ProfileSection* const found = port::FindSection(sections, section);
    if (key == nullptr)
    {
        const std::string names = found == nullptr ? std::string() : KeyNames(*found);
        return CopyListOrDefault(names, defaultText, buffer, size);
    }
    const ProfileLine* const line = found == nullptr ? nullptr : port::FindKey(*found, key);
    return line != nullptr ? CopyValue(port::WithoutQuotes(line->value), buffer, size)
                           : CopyValue(DefaultOf(defaultText), buffer, size);
}

DWORD CopySection(LPCSTR section, LPSTR buffer, DWORD size, LPCSTR fileName)
{
    const std::vector<ProfileSection> sections = SectionsOf(fileName);
    const ProfileSection* const found =
        section == nullptr ? nullptr : port::FindSection(sections, section);
    // Two spare characters: lines that fit exactly count as cut, though nothing is missing.
    return CopyList(found == nullptr ? std::string() : WholeLines(*found), 2, buffer, size);
}

/// Without memory the caller gets an empty list, which is an empty text too, and the reason.
template <typename Copying>
DWORD WithinMemory(LPSTR buffer, DWORD size, const Copying& copying)
{
    try
    {
        return copying();
    }
    catch (const std::bad_alloc&)
    {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return CopyList(std::string(), 0, buffer, size);
    }
}

} // namespace

DWORD GetPrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR defaultText, LPSTR buffer,
                               DWORD size, LPCSTR fileName)
{
    return WithinMemory(buffer, size,
                        [=]
                        { return CopyString(section, key, defaultText, buffer, size, fileName); });
}

DWORD GetPrivateProfileSectionA(LPCSTR section, LPSTR buffer, DWORD size, LPCSTR fileName)
{
    return WithinMemory(buffer, size, [=] { return CopySection(section, buffer, size, fileName); });
}
