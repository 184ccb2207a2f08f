#include "engine/mt_parties.h"

#include <string_view>

namespace engine
{

namespace
{

constexpr char kNamed = 'D';
constexpr char kNumbered = 'F';
constexpr std::string_view kNameLine = "1/";

void Append(std::string& text, std::string_view line)
{
    if (!text.empty())
    {
        text += ' ';
    }
    text += line;
}

std::string WithoutSlashes(const std::string& line)
{
    const std::size_t start = line.find_first_not_of('/');
    return start == std::string::npos ? std::string() : line.substr(start);
}

MtParty ReadNumberedParty(const MtField& field)
{
    MtParty party;
    for (const std::string& line : field.lines)
    {
        if (line.starts_with(kNameLine))
        {
            Append(party.name, std::string_view(line).substr(kNameLine.size()));
        }
        else if (&line == &field.lines.front())
        {
            party.account = WithoutSlashes(line);
        }
    }
    return party;
}

} // namespace

MtParty ReadParty(const MtField& field)
{
    if (field.tag.back() == kNumbered)
    {
        return ReadNumberedParty(field);
    }
    MtParty party;
    for (const std::string& line : field.lines)
    {
        if (line.starts_with('/') && party.account.empty() && party.name.empty())
        {
            party.account = WithoutSlashes(line);
        }
        else if (party.name.empty())
        {
            party.name = line;
        }
    }
    return party;
}

MtBank ReadBank(const MtField& field)
{
    MtBank bank;
    for (const std::string& line : field.lines)
    {
        if (line.starts_with('/'))
        {
            bank.code = bank.code.empty() ? WithoutSlashes(line) : bank.code;
        }
        else if (field.tag.back() == kNamed)
        {
            Append(bank.name, line);
        }
        else if (!line.empty())
        {
            bank.code = line;
        }
    }
    return bank;
}

std::string JoinLines(const MtField& field)
{
    std::string text;
    for (const std::string& line : field.lines)
    {
        Append(text, line);
    }
    return text;
}

} // namespace engine
