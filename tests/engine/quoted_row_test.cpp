#include "engine/quoted_row.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>

namespace
{

std::string Row(const std::string& field)
{
    std::string line;
    engine::AppendQuotedRow(line, {field});
    return line;
}

// What a field becomes, byte by byte.
std::string Literal(const std::string& field)
{
    std::string text;
    for (const char character : field)
    {
        const bool control = static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
        text += control ? ' ' : character == '"' ? '\'' : character;
    }
    if (!text.empty() && text.back() == '\\')
    {
        text.back() = '/';
    }
    return '"' + text + '"';
}

struct FieldCase
{
    const char* name;
    std::string field;
    std::string quoted;
};

void PrintTo(const FieldCase& fieldCase, std::ostream* stream)
{
    *stream << fieldCase.name;
}

const FieldCase kFieldCases[] = {
    {"Empty", "", "\"\""},
    {"PlainText", "Maria Lopez Garcia", "\"Maria Lopez Garcia\""},
    {"QuoteBecomesAnApostrophe", "the \"Great\"", "\"the 'Great'\""},
    {"LineEndsBecomeBlanks", "a\r\nb", "\"a  b\""},
    {"ControlCharactersBecomeBlanks", std::string("a\0b\x1A\x7F", 5), "\"a b  \""},
    {"BackslashAtTheEndBecomesASlash", "C:\\out\\", "\"C:\\out/\""},
    {"BackslashAloneBecomesASlash", "\\", "\"/\""},
    {"SeparatorsStay", "a;b", "\"a;b\""},
    {"LettersBeyondAsciiStay",
     "Jos\xE9 N\xFA\xF1"
     "ez \x80\xFF",
     "\"Jos\xE9 N\xFA\xF1"
     "ez \x80\xFF\""},
};

class QuotedField : public testing::TestWithParam<FieldCase>
{
};

} // namespace

TEST_P(QuotedField, StandsBetweenQuotesAsItMay)
{
    EXPECT_EQ(Row(GetParam().field), GetParam().quoted);
}

INSTANTIATE_TEST_SUITE_P(Fields, QuotedField, testing::ValuesIn(kFieldCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(QuotedRow, FieldsAreJoinedBySemicolonsBehindWhatIsThere)
{
    std::string line = "before ";
    engine::AppendQuotedRow(line, {"1", "", "a;b", "x\\"});
    EXPECT_EQ(line, "before \"1\";\"\";\"a;b\";\"x/\"");
}

TEST(QuotedRow, RowWithoutFieldsIsEmpty)
{
    std::string line = "before";
    engine::AppendQuotedRow(line, {});
    EXPECT_EQ(line, "before");
}

TEST(QuotedRow, EveryByteIsTreatedAlikeAtEveryPlace)
{
    for (std::size_t length = 1; length <= 20; ++length)
    {
        for (std::size_t place = 0; place < length; ++place)
        {
            for (unsigned value = 0; value < 256; ++value)
            {
                std::string field(length, place % 2 == 0 ? '!' : '\xA2');
                field[place] = static_cast<char>(static_cast<unsigned char>(value));
                ASSERT_EQ(Row(field), Literal(field)) << length << ' ' << place << ' ' << value;
            }
        }
    }
}
