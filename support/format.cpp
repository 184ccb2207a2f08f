#include "support/format.h"

#include "support/code_points.h"
#include "support/codepage.h"
#include "support/format_number.h"

#include <algorithm>
#include <cassert>
#include <string_view>

namespace
{

using support::Conversion;

// Nothing that is formatted here is as long; a larger width or precision is a slip in a template.
constexpr std::size_t kLargestCount = 1'000'000;

/// A mistake in a template: debug builds stop here, others print nothing for the conversion.
void RefuseConversion()
{
    assert(false && "unknown conversion or argument of the wrong kind in a format template");
}

/// Takes one template apart and fills it. Character is the kind of the template and of the result.
template <typename Character>
class Formatter
{
public:
    using Text = std::basic_string<Character>;
    using View = std::basic_string_view<Character>;

    Formatter(Text& target, const Character* format, const FormatArgument* arguments,
              std::size_t count)
        : m_target(target), m_position(format), m_next(arguments), m_end(arguments + count)
    {
    }

    void Run()
    {
        using Traits = std::char_traits<Character>;
        const Character* const end = m_position + Traits::length(m_position);
        while (m_position != end)
        {
            const auto left = static_cast<std::size_t>(end - m_position);
            const Character* const mark = Traits::find(m_position, left, Character('%'));
            if (mark == nullptr)
            {
                m_target.append(m_position, end);
                return;
            }
            m_target.append(m_position, mark);
            m_position = mark + 1;
            Convert(ReadConversion());
        }
    }

private:
    static constexpr bool kIsWide = sizeof(Character) > 1;

    bool TakeIf(char character) noexcept
    {
        if (*m_position != Character(character))
        {
            return false;
        }
        ++m_position;
        return true;
    }

    std::size_t ReadCount() noexcept
    {
        std::size_t count = 0;
        for (; *m_position >= Character('0') && *m_position <= Character('9'); ++m_position)
        {
            count = std::min(count * 10 + static_cast<std::size_t>(*m_position - Character('0')),
                             kLargestCount);
        }
        return count;
    }

    bool ReadFlag(Conversion& conversion) noexcept
    {
        struct Flag
        {
            char character;
            bool Conversion::*member;
        };
        static constexpr Flag kFlags[] = {{'-', &Conversion::left},
                                          {'+', &Conversion::plus},
                                          {' ', &Conversion::blank},
                                          {'0', &Conversion::zero},
                                          {'#', &Conversion::alternate}};
        for (const Flag& flag : kFlags)
        {
            if (TakeIf(flag.character))
            {
                conversion.*flag.member = true;
                return true;
            }
        }
        return false;
    }

    Conversion::Size ReadSize() noexcept
    {
        if (TakeIf('h'))
        {
            return Conversion::Size::Short;
        }
        if (TakeIf('l'))
        {
            return TakeIf('l') ? Conversion::Size::Wide : Conversion::Size::Long;
        }
        if (m_position[0] == Character('I') && m_position[1] == Character('6') &&
            m_position[2] == Character('4'))
        {
            m_position += 3;
            return Conversion::Size::Wide;
        }
        return Conversion::Size::Plain;
    }

    Conversion ReadConversion() noexcept
    {
        Conversion conversion;
        while (ReadFlag(conversion))
        {
        }
        conversion.width = ReadCount();
        conversion.hasPrecision = TakeIf('.');
        conversion.precision = ReadCount();
        conversion.size = ReadSize();
        if (*m_position > Character() && *m_position < Character(0x7F))
        {
            conversion.type = static_cast<char>(*m_position);
        }
        if (*m_position != Character())
        {
            ++m_position;
        }
        return conversion;
    }

    void Convert(const Conversion& conversion)
    {
        switch (conversion.type)
        {
        case '%':
            m_target.push_back(Character('%'));
            return;
        case 'd':
        case 'i':
        case 'u':
        case 'x':
        case 'X':
        case 'f':
        case 'e':
        case 'g':
            ConvertNumber(conversion);
            return;
        case 'c':
            ConvertCharacter(conversion);
            return;
        case 's':
        case 'S':
            ConvertText(conversion);
            return;
        default:
            // An unknown conversion has its argument, so that those behind it stay in step.
            TakeArgument();
            RefuseConversion();
            return;
        }
    }

    FormatArgument TakeArgument() noexcept
    {
        return m_next == m_end ? FormatArgument() : *m_next++;
    }

    void ConvertNumber(const Conversion& conversion)
    {
        std::string number;
        if (!support::AppendNumber(number, conversion, TakeArgument()))
        {
            RefuseConversion();
            return;
        }
        m_target.append(number.begin(), number.end());
    }

    void ConvertCharacter(const Conversion& conversion)
    {
        const FormatArgument argument = TakeArgument();
        if (argument.kind != FormatArgument::Kind::Signed &&
            argument.kind != FormatArgument::Kind::Unsigned)
        {
            RefuseConversion();
            return;
        }
        const unsigned long long bits = argument.kind == FormatArgument::Kind::Signed
                                            ? static_cast<unsigned long long>(argument.signedValue)
                                            : argument.unsignedValue;
        const auto character = static_cast<Character>(bits);
        AppendPadded(View(&character, 1), conversion);
    }

    /// %s is text of the template's own kind, %S of the other; h and l say it outright.
    static bool TakesWide(const Conversion& conversion) noexcept
    {
        switch (conversion.size)
        {
        case Conversion::Size::Short:
            return false;
        case Conversion::Size::Plain:
            return kIsWide == (conversion.type == 's');
        default:
            return true;
        }
    }

    void ConvertText(const Conversion& conversion)
    {
        const FormatArgument argument = TakeArgument();
        const bool wide = TakesWide(conversion);
        if (argument.kind != (wide ? FormatArgument::Kind::Wide : FormatArgument::Kind::Narrow))
        {
            RefuseConversion();
            return;
        }
        if (wide)
        {
            AppendWideText(conversion, argument.wide);
            return;
        }
        AppendNarrowText(conversion, argument.narrow);
    }

    /// The text as far as the precision can reach, `unitsEach` units for one character of the
    /// result. What stands behind is not looked at: a text cut by precision may lack its end.
    template <typename Source>
    static std::basic_string_view<Source>
    ViewWithin(const Source* text, const Conversion& conversion, std::size_t unitsEach) noexcept
    {
        if (!conversion.hasPrecision)
        {
            return text;
        }
        const Source* end = text;
        for (std::size_t left = conversion.precision * unitsEach; left > 0 && *end != Source();
             --left)
        {
            ++end;
        }
        return {text, static_cast<std::size_t>(end - text)};
    }

    void AppendWideText(const Conversion& conversion, const wchar_t* text)
    {
        const wchar_t* const given = text == nullptr ? L"(null)" : text;
        if constexpr (kIsWide)
        {
            const View reached = ViewWithin(given, conversion, 1);
            const bool full = conversion.hasPrecision && reached.size() == conversion.precision;
            AppendPadded(full ? support::WithoutHalfPair(reached) : reached, conversion);
        }
        else
        {
            // A surrogate pair is one character of the result.
            const std::string narrow = support::NarrowFromWide(ViewWithin(given, conversion, 2));
            AppendPadded(conversion.hasPrecision ? View(narrow).substr(0, conversion.precision)
                                                 : View(narrow),
                         conversion);
        }
    }

    void AppendNarrowText(const Conversion& conversion, const char* text)
    {
        const std::string_view reached =
            ViewWithin(text == nullptr ? "(null)" : text, conversion, 1);
        if constexpr (kIsWide)
        {
            const std::size_t padding = PaddingOf(reached.size(), conversion);
            m_target.append(conversion.left ? 0 : padding, Character(' '));
            support::AppendWideFromNarrow(m_target, reached);
            m_target.append(conversion.left ? padding : 0, Character(' '));
        }
        else
        {
            AppendPadded(reached, conversion);
        }
    }

    static std::size_t PaddingOf(std::size_t size, const Conversion& conversion) noexcept
    {
        return conversion.width > size ? conversion.width - size : 0;
    }

    void AppendPadded(View text, const Conversion& conversion)
    {
        const std::size_t padding = PaddingOf(text.size(), conversion);
        m_target.append(conversion.left ? 0 : padding, Character(' '));
        m_target.append(text);
        m_target.append(conversion.left ? padding : 0, Character(' '));
    }

    Text& m_target;
    const Character* m_position;
    const FormatArgument* m_next;
    const FormatArgument* m_end;
};

} // namespace

namespace support
{

void AppendWide(std::wstring& target, const wchar_t* format, const FormatArgument* arguments,
                std::size_t count)
{
    Formatter<wchar_t>(target, format == nullptr ? L"" : format, arguments, count).Run();
}

std::wstring FormatWide(const wchar_t* format, const FormatArgument* arguments, std::size_t count)
{
    // Room for numbers and short texts besides; statements are made without a second allocation.
    constexpr std::size_t usualArgument = 32;
    std::wstring text;
    text.reserve((format == nullptr ? 0 : std::char_traits<wchar_t>::length(format)) +
                 count * usualArgument);
    AppendWide(text, format, arguments, count);
    return text;
}

std::string FormatNarrow(const char* format, const FormatArgument* arguments, std::size_t count)
{
    std::string text;
    Formatter<char>(text, format == nullptr ? "" : format, arguments, count).Run();
    return text;
}

} // namespace support
