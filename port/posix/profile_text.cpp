#include "port/posix/profile_text.h"

#include "port/files.h"
#include "port/posix/native_text.h"

#include <algorithm>

namespace port
{

namespace
{

bool IsBlank(char character)
{
    return character == ' ' || character == '\t';
}

std::string_view Trimmed(std::string_view text)
{
    while (!text.empty() && IsBlank(text.front()))
    {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlank(text.back()))
    {
        text.remove_suffix(1);
    }
    return text;
}

/// Lower-case Windows-1252 letter of the same name; the multiplication sign is none.
unsigned char Lowered(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    const bool plain = byte >= 'A' && byte <= 'Z';
    const bool accented = byte >= 0xC0 && byte <= 0xDE && byte != 0xD7;
    if (plain || accented)
    {
        return static_cast<unsigned char>(byte + 0x20);
    }
    if (byte == 0x8A || byte == 0x8C || byte == 0x8E)
    {
        return static_cast<unsigned char>(byte + 0x10);
    }
    return byte == 0x9F ? 0xFF : byte;
}

bool EqualNames(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return Lowered(a) == Lowered(b); });
}

/// Narrow text of UTF-16 bytes behind their mark.
std::string NarrowOfUtf16(std::string_view bytes, bool bigEndian)
{
    const auto unitAt = [&](std::size_t index)
    {
        const auto first = static_cast<unsigned char>(bytes[index]);
        const auto second = static_cast<unsigned char>(bytes[index + 1]);
        return static_cast<char32_t>(bigEndian ? first * 256 + second : second * 256 + first);
    };
    std::string text;
    for (std::size_t index = 0; index + 1 < bytes.size(); index += 2)
    {
        const char32_t unit = unitAt(index);
        text += NarrowCharacterOf(unit);
        const bool high = unit >= 0xD800 && unit <= 0xDBFF && index + 3 < bytes.size();
        if (high && unitAt(index + 2) >= 0xDC00 && unitAt(index + 2) <= 0xDFFF)
        {
            index += 2; // a pair is one character without a place
        }
    }
    return text;
}

/// A UTF-8 mark stays: it hides the first section, as it does on Windows.
std::string NarrowOf(std::string_view bytes)
{
    if (bytes.substr(0, 2) == "\xFF\xFE")
    {
        return NarrowOfUtf16(bytes.substr(2), false);
    }
    if (bytes.substr(0, 2) == "\xFE\xFF")
    {
        return NarrowOfUtf16(bytes.substr(2), true);
    }
    return std::string(bytes);
}

/// Takes the first line off the text, without its end: CR LF, LF or a lone CR.
std::string_view TakeLine(std::string_view& text)
{
    const std::size_t end = text.find_first_of("\r\n");
    const std::string_view line = text.substr(0, end);
    if (end == std::string_view::npos)
    {
        text = std::string_view();
        return line;
    }
    const bool pair = text.substr(end, 2) == "\r\n";
    text.remove_prefix(end + (pair ? 2U : 1U));
    return line;
}

/// 0x1A and NUL end a line's text there; the lines after it are still read.
std::string_view UpToControl(std::string_view line)
{
    return line.substr(0, line.find_first_of(std::string_view("\x1A\0", 2)));
}

/// The name of a section line. Text after the bracket is ignored; without one it opens nothing.
bool TrySectionName(std::string_view line, std::string_view& name)
{
    const std::size_t end = line.find(']');
    if (line.front() != '[' || end == std::string_view::npos)
    {
        return false;
    }
    name = Trimmed(line.substr(1, end - 1));
    return true;
}

ProfileLine LineOf(std::string_view line)
{
    const std::size_t separator = line.find('=');
    ProfileLine parts;
    parts.key = Trimmed(line.substr(0, separator));
    parts.hasValue = separator != std::string_view::npos;
    if (parts.hasValue)
    {
        parts.value = Trimmed(line.substr(separator + 1));
    }
    return parts;
}

} // namespace

std::vector<ProfileSection> ParseProfile(std::string_view bytes)
{
    const std::string narrow = NarrowOf(bytes);
    std::string_view text = narrow;
    std::vector<ProfileSection> sections;
    while (!text.empty())
    {
        const std::string_view line = Trimmed(UpToControl(TakeLine(text)));
        std::string_view name;
        if (line.empty() || line.front() == ';')
        {
            continue;
        }
        if (TrySectionName(line, name))
        {
            sections.push_back({std::string(name), {}});
        }
        else if (!sections.empty())
        {
            sections.back().lines.push_back(LineOf(line));
        }
    }
    return sections;
}

const ProfileSection* FindSection(const std::vector<ProfileSection>& sections,
                                  std::string_view name)
{
    const auto found = std::find_if(sections.begin(), sections.end(),
                                    [asked = Trimmed(name)](const ProfileSection& section)
                                    { return EqualNames(section.name, asked); });
    return found == sections.end() ? nullptr : &*found;
}

const ProfileLine* FindKey(const ProfileSection& section, std::string_view key)
{
    const std::string_view asked = Trimmed(key);
    const auto found =
        std::find_if(section.lines.begin(), section.lines.end(),
                     [asked](const ProfileLine& line)
                     { return line.hasValue && !asked.empty() && EqualNames(line.key, asked); });
    return found == section.lines.end() ? nullptr : &*found;
}

std::string_view WithoutQuotes(std::string_view text)
{
    const bool quoted = text.size() >= 2 && text.front() == text.back() &&
                        (text.front() == '"' || text.front() == '\'');
    return quoted ? text.substr(1, text.size() - 2) : text;
}

bool ReadProfile(const char* path, std::vector<ProfileSection>& sections)
{
    File file;
    if (!file.Open(path, OpenMode::Read))
    {
        return false;
    }
    std::string bytes;
    char block[4096];
    std::int64_t got = 0;
    while ((got = file.Read(block, sizeof block)) > 0)
    {
        bytes.append(block, static_cast<std::size_t>(got));
    }
    if (got < 0)
    {
        return false;
    }
    sections = ParseProfile(bytes);
    return true;
}

} // namespace port
