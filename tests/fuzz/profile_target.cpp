#include "port/profile.h"
#include "support/casefold.h"
#include "support/codepage.h"
#include "support/utf16.h"
#include "tests/fuzz/memory_files.h"
#include "tests/fuzz/target.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

// The profile reader beside a plain reading of the rules of Windows. What is asked for is what the
// file holds, into buffers that fit and into ones that do not.

namespace
{

const char* const kProfile = "/orders/profile.ini";
constexpr std::size_t kMostAsked = 6;

struct Line
{
    std::string key;
    std::optional<std::string> value;
};

struct Section
{
    std::string name;
    std::vector<Line> lines;
};

// What a call must give: its result and the buffer's bytes up to the last NUL that counts.
struct Answer
{
    DWORD result = 0;
    std::string bytes;
};

std::string Trim(std::string text)
{
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
    {
        text.pop_back();
    }
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first);
}

std::string Narrow(std::string_view bytes)
{
    const bool little = bytes.starts_with("\xFF\xFE");
    if (!little && !bytes.starts_with("\xFE\xFF"))
    {
        return std::string(bytes);
    }
    std::u16string units;
    for (std::size_t i = 2; i + 1U < bytes.size(); i += 2)
    {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1U]);
        units += static_cast<char16_t>(little ? second * 256 + first : first * 256 + second);
    }
    return support::NarrowFromWide(support::WideFromUtf16(units));
}

// CR LF, LF and a lone CR end a line; 0x1A and NUL end its text.
std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines(1);
    bool cut = false;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] == '\n' && i > 0 && text[i - 1U] == '\r')
        {
            continue;
        }
        if (text[i] == '\r' || text[i] == '\n')
        {
            lines.emplace_back();
            cut = false;
            continue;
        }
        cut = cut || text[i] == '\x1A' || text[i] == '\0';
        if (!cut)
        {
            lines.back() += text[i];
        }
    }
    return lines;
}

std::vector<Section> Parse(std::string_view bytes)
{
    std::vector<Section> sections;
    for (const std::string& untrimmed : Lines(Narrow(bytes)))
    {
        const std::string line = Trim(untrimmed);
        const std::size_t bracket = line.find(']');
        if (line.empty() || line[0] == ';')
        {
            continue;
        }
        if (line[0] == '[' && bracket != std::string::npos)
        {
            sections.push_back({Trim(line.substr(1, bracket - 1U)), {}});
            continue;
        }
        if (sections.empty())
        {
            continue;
        }
        const std::size_t equals = line.find('=');
        Line read{Trim(line.substr(0, equals)), std::nullopt};
        if (equals != std::string::npos)
        {
            read.value = Trim(line.substr(equals + 1U));
        }
        sections.back().lines.push_back(read);
    }
    return sections;
}

bool SameName(const std::string& left, const std::string& right)
{
    return support::EqualIgnoringCase(support::WideFromNarrow(Trim(left)).c_str(),
                                      support::WideFromNarrow(Trim(right)).c_str());
}

const Section* Find(const std::vector<Section>& sections, const std::string& name)
{
    for (const Section& section : sections)
    {
        if (SameName(section.name, name))
        {
            return &section;
        }
    }
    return nullptr;
}

std::optional<std::string> Find(const Section* section, const std::string& key)
{
    if (section == nullptr || Trim(key).empty())
    {
        return std::nullopt;
    }
    for (const Line& line : section->lines)
    {
        if (line.value.has_value() && SameName(line.key, key))
        {
            return line.value;
        }
    }
    return std::nullopt;
}

std::string Unquoted(const std::string& text)
{
    const bool quoted = text.size() >= 2 && text.front() == text.back() &&
                        (text.front() == '"' || text.front() == '\'');
    return quoted ? text.substr(1, text.size() - 2U) : text;
}

Answer ValueIn(DWORD size, const std::string& text)
{
    if (size == 0)
    {
        return {};
    }
    const std::string cut = text.substr(0, size - 1U);
    return {static_cast<DWORD>(cut.size()), cut + '\0'};
}

// Texts that each end with a NUL, and one more. `spare` bytes must be left, or the list is cut.
Answer ListIn(DWORD size, const std::string& list, std::size_t spare)
{
    if (list.size() + spare <= size)
    {
        return {static_cast<DWORD>(list.size()), list + std::string(list.empty() ? 2U : 1U, '\0')};
    }
    return {size - 2U, list.substr(0, size - 2U) + std::string(2, '\0')};
}

std::string SectionLines(const Section* section)
{
    std::string list;
    for (const Line& line : section == nullptr ? std::vector<Line>() : section->lines)
    {
        list += line.key + (line.value.has_value() ? "=" + *line.value : "") + '\0';
    }
    return list;
}

std::string KeyNames(const Section* section)
{
    std::string list;
    for (const Line& line : section == nullptr ? std::vector<Line>() : section->lines)
    {
        list += line.value.has_value() && !line.key.empty() ? line.key + '\0' : "";
    }
    return list;
}

std::string SectionNames(const std::vector<Section>& sections)
{
    std::string list;
    for (const Section& section : sections)
    {
        list += section.name.empty() ? "" : section.name + '\0';
    }
    return list;
}

// Calls with a buffer of exactly `size` bytes, so that one more that is written or read is found.
template <typename Call>
void Expect(DWORD size, const Answer& expected, const Call& call)
{
    std::vector<char> buffer(size, '\x7E');
    const DWORD result = call(buffer.data(), size);
    fuzz::Require(result == expected.result, "another length");
    fuzz::Require(std::string_view(buffer.data(), expected.bytes.size()) == expected.bytes,
                  "other bytes");
}

void AskForValue(const std::string& section, const std::string& key, DWORD size,
                 const Answer& expected)
{
    Expect(size, expected,
           [&](LPSTR buffer, DWORD room)
           {
               return GetPrivateProfileStringA(section.c_str(), key.c_str(), " 'none' ", buffer,
                                               room, kProfile);
           });
}

void AskForList(LPCSTR section, DWORD size, const std::string& list)
{
    // A list that is empty gives the default text.
    const Answer expected = list.empty() ? ValueIn(size, "none") : ListIn(size, list, 1);
    Expect(size, expected,
           [&](LPSTR buffer, DWORD room)
           { return GetPrivateProfileStringA(section, nullptr, "none", buffer, room, kProfile); });
}

void AskForSection(const std::string& section, DWORD size, const std::string& list)
{
    Expect(size, ListIn(size, list, 2),
           [&](LPSTR buffer, DWORD room)
           { return GetPrivateProfileSectionA(section.c_str(), buffer, room, kProfile); });
}

void AskForEverything(const std::vector<Section>& sections, DWORD size)
{
    AskForList(nullptr, std::max<DWORD>(size, 2), SectionNames(sections));
    std::vector<std::string> names = {"", "unknown"};
    for (const Section& section : sections)
    {
        names.push_back(section.name);
    }
    names.resize(std::min(names.size(), kMostAsked));
    for (const std::string& name : names)
    {
        const Section* const section = Find(sections, name);
        AskForSection(name, std::max<DWORD>(size, 2), SectionLines(section));
        AskForList(name.c_str(), std::max<DWORD>(size, 2), KeyNames(section));
        std::vector<std::string> keys = {"unknown"};
        for (const Line& line : section == nullptr ? std::vector<Line>() : section->lines)
        {
            keys.push_back(line.key);
        }
        keys.resize(std::min(keys.size(), kMostAsked));
        for (const std::string& key : keys)
        {
            const std::optional<std::string> value = Find(section, key);
            // The default keeps its leading blank and loses the trailing one, so no quotes go.
            AskForValue(name, key, size,
                        ValueIn(size, value.has_value() ? Unquoted(*value) : " 'none'"));
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = fuzz::View(data, size);
    fuzz::ResetFiles();
    fuzz::PutFile(kProfile, bytes);
    const std::vector<Section> sections = Parse(bytes);
    AskForEverything(sections, 70'000);
    AskForEverything(sections, static_cast<DWORD>(fuzz::NumberOf(bytes) % 40U));
    return 0;
}
