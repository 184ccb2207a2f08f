#include "amounts/tdelimitedfile.h"
#include "tests/fuzz/memory_files.h"
#include "tests/fuzz/target.h"

#include <string>
#include <vector>

// The delimited reader beside a reading of its rules that goes character by character.

namespace
{

using Fields = std::vector<std::string>;

// Text-mode reading: CR LF is LF, 0x1A ends the file.
std::string Translated(std::string_view bytes)
{
    std::string text;
    for (std::size_t i = 0; i < bytes.size() && bytes[i] != '\x1A'; ++i)
    {
        const bool pair = bytes[i] == '\r' && i + 1U < bytes.size() && bytes[i + 1U] == '\n';
        if (!pair)
        {
            text += bytes[i];
        }
    }
    return text;
}

class LiteralReader
{
public:
    LiteralReader(std::string_view bytes, bool oneLineHeader) : m_text(Translated(bytes))
    {
        firstHeader = SplitPlain(NextLine());
        if (!oneLineHeader)
        {
            SkipLine();
            if (hasMoreRows)
            {
                secondHeader = SplitQuoted(NextLine());
            }
            SkipLine();
        }
        current = SplitQuoted(NextLine());
    }

    Fields NextRow() { return SplitQuoted(NextLine()); }

    Fields firstHeader;
    Fields secondHeader;
    Fields current;
    bool hasMoreRows = true;

private:
    // Up to and including the line feed; a final line feed is followed by no further row.
    std::string NextLine()
    {
        std::string line;
        while (m_at < m_text.size())
        {
            const char character = m_text[m_at++];
            line += character;
            if (character == '\n')
            {
                break;
            }
        }
        if (line.empty() || line.back() != '\n' || m_at == m_text.size())
        {
            hasMoreRows = false;
        }
        return line;
    }

    void SkipLine()
    {
        if (hasMoreRows)
        {
            NextLine();
        }
    }

    static Fields SplitPlain(const std::string& line)
    {
        if (line.empty())
        {
            return {};
        }
        Fields fields(1);
        for (const char character : line)
        {
            if (character == ';')
            {
                fields.emplace_back();
            }
            else if (character != '\n')
            {
                fields.back() += character;
            }
        }
        return fields;
    }

    static Fields SplitQuoted(const std::string& line)
    {
        if (line.empty())
        {
            return {};
        }
        Fields fields;
        std::string field;
        bool inside = false;
        for (std::size_t i = 0; i < line.size(); ++i)
        {
            const bool quote = line[i] == '"' && (i == 0 || line[i - 1U] != '\\');
            if (quote && inside)
            {
                fields.push_back(field);
            }
            if (quote)
            {
                inside = !inside;
                field.clear();
            }
            else if (inside)
            {
                field += line[i];
            }
        }
        if (fields.empty())
        {
            return {line};
        }
        if (inside)
        {
            fields.push_back(field);
        }
        return fields;
    }

    std::string m_text;
    std::size_t m_at = 0;
};

Fields FieldsOf(const amounts::DelimitedRow& row)
{
    Fields fields;
    for (std::size_t i = 0; i < row.GetCount(); ++i)
    {
        fields.emplace_back(row.GetAt(i));
    }
    return fields;
}

// A header is a list of texts that end at their first NUL.
void CompareHeader(const TArray<TSimpleString>& header, const Fields& expected)
{
    fuzz::Require(header.GetCount() == static_cast<int>(expected.size()), "another header");
    for (int i = 0; i < header.GetCount(); ++i)
    {
        const std::string& text = expected[static_cast<std::size_t>(i)];
        fuzz::Require(std::string_view(header.GetAt(i)->SafeGetString()) == text.c_str(),
                      "another header field");
    }
}

// Asks for single fields, here and there, before all of them.
void CompareRow(const amounts::DelimitedRow& row, const Fields& expected, std::uint64_t choice)
{
    for (; choice > 0; choice /= 11U)
    {
        const std::size_t index = choice % 11U;
        fuzz::Require(row.GetAt(index) == (index < expected.size() ? expected[index] : ""),
                      "another field");
    }
    fuzz::Require(FieldsOf(row) == expected, "another row");
}

// Reads some rows into a row of its own, while the current one must stay.
void Compare(std::string_view bytes, bool oneLineHeader)
{
    const std::string path = "/orders/work.veu.cp";
    TDelimitedFile reader(path.c_str(), oneLineHeader ? 1 : 0);
    LiteralReader literal(bytes, oneLineHeader);
    CompareHeader(reader.GetFirstHeader(), literal.firstHeader);
    CompareHeader(reader.GetSecondHeader(), literal.secondHeader);
    std::uint64_t choice = fuzz::NumberOf(bytes);
    CompareRow(reader.CurrentRow(), literal.current, choice % 1331U);
    amounts::DelimitedRow own;
    while (literal.hasMoreRows)
    {
        choice = choice * 6364136223846793005U + 1442695040888963407U;
        if (choice >> 62U == 0)
        {
            reader.ReadRow(own);
            CompareRow(own, literal.NextRow(), (choice >> 40U) % 1331U);
        }
        else
        {
            fuzz::Require(reader.NextRow(), "a row is missing");
            literal.current = literal.NextRow();
        }
        CompareRow(reader.CurrentRow(), literal.current, (choice >> 20U) % 1331U);
    }
    fuzz::Require(!reader.HasMoreRows() && !reader.NextRow(), "a row too many");
    fuzz::Require(reader.IsIntact(), "a line was lost");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = fuzz::View(data, size);
    const std::size_t blockSize = fuzz::NumberOf(bytes) % 97U; // 0: the whole file at once
    for (const bool oneLineHeader : {false, true})
    {
        fuzz::ResetFiles();
        fuzz::PutFile("/orders/work.veu.cp", bytes);
        fuzz::LimitReads(blockSize, blockSize);
        Compare(bytes, oneLineHeader);
    }
    return 0;
}
