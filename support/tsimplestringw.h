#pragma once

#include "support/export.h"
#include "support/format_argument.h"

#include <cstddef>

/// Wide text buffer, Unicode in the platform's wchar_t. Otherwise as TSimpleString.
class SIGNUTILS_API TSimpleStringW
{
public:
    TSimpleStringW() noexcept;
    TSimpleStringW(const wchar_t* text); ///< converts freely NOLINT(google-explicit-constructor)
    TSimpleStringW(const wchar_t* text, std::size_t length); ///< `length` of them
    TSimpleStringW(const TSimpleStringW& other);             ///< a text of its own
    TSimpleStringW(TSimpleStringW&& other) noexcept;         ///< leaves `other` empty
    ~TSimpleStringW();

    TSimpleStringW& operator=(const TSimpleStringW& other);     ///< copies
    TSimpleStringW& operator=(TSimpleStringW&& other) noexcept; ///< leaves `other` empty
    TSimpleStringW& operator=(const wchar_t* text);             ///< null empties it

    const wchar_t* SafeGetString() const noexcept; ///< never null, valid until the next change
    std::size_t GetLength() const noexcept;        ///< `wchar_t`
    bool IsEmpty() const noexcept;                 ///< no character
    void Empty() noexcept;                         ///< keeps its memory

    TSimpleStringW& Append(const wchar_t* text);                     ///< null appends nothing
    TSimpleStringW& Append(const wchar_t* text, std::size_t length); ///< `length` of them
    TSimpleStringW& operator+=(const wchar_t* text) { return Append(text); } ///< appends
    TSimpleStringW& operator+=(const TSimpleStringW& text);                  ///< appends

    /// Removes blanks, tabs, CR and LF: 1 at the left end, 2 at the right end, 3 at both.
    void Trim(int mode);

    /// Replaces every occurrence of `from`; used to double quotes.
    void ReplaceAll(const wchar_t* from, const wchar_t* to);

    /// Fills a wide template: %s takes wide text, %S narrow text (see support/format.h).
    template <typename... Arguments>
    void GenerateString(const wchar_t* format, const Arguments&... arguments)
    {
        const FormatArgument list[] = {FormatArgument(), FormatArgument(arguments)...};
        GenerateFrom(format, list + 1, sizeof...(Arguments));
    }

    /// The catalogue's message of that number with its arguments in their listed order: texts, and
    /// amounts in the main unit. Missing arguments are left out of the message.
    template <typename... Arguments>
    void GenerateString(unsigned int messageNumber, const Arguments&... arguments)
    {
        const FormatArgument list[] = {FormatArgument(), FormatArgument(arguments)...};
        GenerateMessage(messageNumber, list + 1, sizeof...(Arguments));
    }

    /// Replaces the text by the catalogue's message of that number, without arguments.
    void LoadStringA(unsigned int messageNumber) { GenerateMessage(messageNumber, nullptr, 0); }

    /// The Unicode text of a Windows-1252 one.
    void FromNarrow(const char* text);

private:
    void GenerateFrom(const wchar_t* format, const FormatArgument* arguments, std::size_t count);
    void GenerateMessage(unsigned int messageNumber, const FormatArgument* arguments,
                         std::size_t count);

    wchar_t* m_text;
    std::size_t m_length;
    std::size_t m_capacity;
};

SIGNUTILS_API bool operator==(const TSimpleStringW& left, const TSimpleStringW& right) noexcept;
SIGNUTILS_API bool operator==(const TSimpleStringW& left, const wchar_t* right) noexcept;
