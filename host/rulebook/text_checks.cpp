#include "host/rulebook/text_checks.h"

#include "host/rulebook/amount_reading.h"
#include "host/rulebook/iso_date.h"
#include "host/rulebook/rule_file_fields.h"
#include "host/text.h"
#include "support/casefold.h"
#include "support/numbers.h"

#include <algorithm>

namespace rulebook
{

namespace
{

// As the columns count: some products count a letter beyond U+FFFF as two.
std::size_t LengthOf(const std::string& utf8)
{
    std::size_t length = 0;
    for (const char32_t letter : host::CodePoints(utf8))
    {
        length += letter > 0xFFFF ? 2 : 1;
    }
    return length;
}

bool IsNumber(std::string_view text)
{
    const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
    return !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

bool IsBlank(char letter)
{
    return letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n';
}

bool HasBlankEnd(const std::string& text)
{
    return !text.empty() && (IsBlank(text.front()) || IsBlank(text.back()));
}

// What can be written for an amount that is meant. Decimals are cut, not rounded, so that no limit
// is raised.
std::string WayToWrite(const std::string& meant)
{
    constexpr std::size_t kMostDecimals = 6;
    const std::string cut = meant.substr(0, meant.find('.') + 1 + kMostDecimals);
    const AmountReading reading = ReadingOf(cut);
    if (!reading.isRead)
    {
        const bool isNegative = reading.read.starts_with('-');
        return std::string("Write at ") + (isNegative ? "least" : "most") + " \"" + reading.read +
               "\": a check can weigh no amount beyond.";
    }
    return "Write \"" + cut + "\"" + (cut == meant ? "." : ": a check reads six decimals.");
}

} // namespace

std::u32string InLowerCase(const std::string& utf8)
{
    std::u32string letters = host::CodePoints(utf8);
    std::transform(letters.begin(), letters.end(), letters.begin(),
                   [](char32_t letter) { return support::LowerCase(letter); });
    return letters;
}

void FileChecker::Wrong(const std::string& path, const std::string& what, const std::string& remedy)
{
    m_problems.Add({m_places.LineOf(path), Places::FieldOf(path), what, remedy});
}

void FileChecker::Doubtful(const std::string& path, const std::string& what,
                           const std::string& remedy)
{
    m_problems.Add({m_places.LineOf(path), Places::FieldOf(path), what, remedy, true});
}

void FileChecker::CheckText(const std::string& path, const std::string& text,
                            const TextColumn& column)
{
    const std::string shown = host::Quoted(text);
    const std::string name = column.name;
    if (const std::size_t length = LengthOf(text); length > column.longest)
    {
        Wrong(path,
              shown + " has " + std::to_string(length) + " characters and column " + name +
                  " takes " + std::to_string(column.longest) + ".",
              "Shorten it.");
    }
    if (text.find('\0') != std::string::npos)
    {
        Wrong(path, shown + " holds a NUL, which ends the text.", "Remove it.");
    }
    if (const std::string lost = host::FirstWithoutNarrowPlace(text);
        column.isNarrow && !lost.empty())
    {
        Wrong(path,
              "the character " + host::Quoted(lost) + " in " + shown +
                  " has no place in Windows-1252, in which a check reads column " + name + ".",
              "Use Western European letters.");
    }
    if (column.entersLookUps && text.find('\'') != std::string::npos)
    {
        Wrong(path,
              shown + " holds an apostrophe, which enters the look-ups of a check as it stands: "
                      "they find nothing.",
              "Write it without apostrophes.");
    }
}

void FileChecker::CheckText(const std::string& path, const std::optional<std::string>& text,
                            const TextColumn& column)
{
    if (text)
    {
        CheckText(path, *text, column);
    }
}

void FileChecker::CheckName(const std::string& path, const std::string& text,
                            const TextColumn& column)
{
    CheckText(path, text, column);
    if (HasBlankEnd(text))
    {
        Doubtful(path,
                 host::Quoted(text) +
                     " has a blank at an end: databases do not agree on whether it "
                     "counts, and nobody sees it.",
                 "Remove the blank.");
    }
}

void FileChecker::CheckName(const std::string& path, const std::optional<std::string>& text,
                            const TextColumn& column)
{
    if (text)
    {
        CheckName(path, *text, column);
    }
}

void FileChecker::CheckCertificate(const std::string& path, const Certificate& certificate)
{
    const std::string& name = certificate.commonName;
    const std::string namePath = path + "." + kCommonName;
    CheckText(namePath, name, kCommonNameColumn);
    CheckText(path + "." + kSerial, certificate.serial, kSerialColumn);
    if (name.find(';') != std::string::npos)
    {
        Wrong(namePath,
              host::Quoted(name) + " holds a semicolon, which separates the signers of a check: "
                                   "nobody can sign with it.",
              "Write it without semicolons.");
    }
    if (HasBlankEnd(name))
    {
        Wrong(namePath,
              host::Quoted(name) + " has a blank at an end, which the signers of a check have "
                                   "not: nobody can sign with it.",
              "Remove the blank.");
    }
    if (certificate.expires && !IsIsoDate(*certificate.expires))
    {
        Wrong(path + "." + kExpires, host::Quoted(*certificate.expires) + " is no date.",
              "Write a day of the calendar, such as 2027-06-30.");
    }
}

void FileChecker::CheckOpposition(const std::string& path,
                                  const std::optional<std::string>& opposition)
{
    CheckText(path, opposition, kOppositionColumn);
    if (opposition && !opposition->empty() && !IsNumber(*opposition))
    {
        const bool isBlocked = support::ToInt32(opposition->c_str()) != 0;
        Doubtful(path,
                 host::Quoted(*opposition) + " is no number; a check reads it as " +
                     (isBlocked ? "in opposition." : "not in opposition."),
                 "Write \"0\" for no opposition, \"1\" for opposition.");
    }
}

void FileChecker::CheckAmount(const std::string& path, const std::string& amount)
{
    CheckText(path, amount, kAmountColumn);
    const AmountReading reading = ReadingOf(amount);
    if (reading.isRead)
    {
        return;
    }
    const std::string read = "a check reads it as " + host::Quoted(reading.read) + ".";
    if (reading.meant.empty())
    {
        Wrong(path, host::Quoted(amount) + " is no amount; " + read,
              "Write digits and a point before the decimals, such as \"1500.00\".");
        return;
    }
    if (reading.meant.size() > 1)
    {
        Wrong(path,
              host::Quoted(amount) + " can be taken for " + host::Quoted(reading.meant[0]) +
                  " and for " + host::Quoted(reading.meant[1]) + "; " + read,
              "Write \"" + reading.meant[0] + "\" or \"" + reading.meant[1] + "\".");
        return;
    }
    Wrong(path, host::Quoted(amount) + " says " + host::Quoted(reading.meant[0]) + ", but " + read,
          WayToWrite(reading.meant[0]));
}

} // namespace rulebook
