#pragma once

#include "support/export.h"
#include "support/format_argument.h"

#include <cstddef>

class TSimpleStringW;

/// Narrow text buffer, Windows-1252. Owns its characters; a null C string counts as empty.
/// Allocation failures raise std::bad_alloc and leave the text as it was.
class SIGNUTILS_API TSimpleString
{
public:
    TSimpleString() noexcept;
    TSimpleString(const char* text); ///< texts convert freely NOLINT(google-explicit-constructor)
    TSimpleString(const char* text, std::size_t length); ///< `length` of them
    TSimpleString(const TSimpleString& other);           ///< a text of its own
    TSimpleString(TSimpleString&& other) noexcept;       ///< leaves `other` empty
    ~TSimpleString();

    TSimpleString& operator=(const TSimpleString& other);     ///< copies
    TSimpleString& operator=(TSimpleString&& other) noexcept; ///< leaves `other` empty
    TSimpleString& operator=(const char* text);               ///< null empties it

    /// The text, never null, valid until the next change.
    const char* SafeGetString() const noexcept;
    std::size_t GetLength() const noexcept; ///< characters
    bool IsEmpty() const noexcept;          ///< no character
    void Empty() noexcept;                  ///< keeps its memory

    TSimpleString& Append(const char* text);                             ///< null appends nothing
    TSimpleString& Append(const char* text, std::size_t length);         ///< `length` of them
    TSimpleString& operator+=(const char* text) { return Append(text); } ///< appends
    TSimpleString& operator+=(const TSimpleString& text);                ///< appends

    /// Removes blanks, tabs, CR and LF: 1 at the left end, 2 at the right end, 3 at both.
    void Trim(int mode);

    /// Replaces every occurrence of `from`; used to double quotes.
    void ReplaceAll(const char* from, const char* to);

    /// Fills a narrow template: %s takes narrow text, %S wide text (see support/format.h).
    template <typename... Arguments>
    void GenerateString(const char* format, const Arguments&... arguments)
    {
        const FormatArgument list[] = {FormatArgument(), FormatArgument(arguments)...};
        GenerateFrom(format, list + 1, sizeof...(Arguments));
    }

    /// Replaces the text by the catalogue's message of that number, without arguments.
    void LoadStringA(unsigned int messageNumber);

    /// The characters of a wide text that Windows-1252 has; '?' for each other one.
    void FromWide(const wchar_t* text);

    /// Turns the Windows-1252 text into the same text in UTF-8, in place.
    void EncodeUtf8();

    /// Writes the text to a new temporary file that only its owner may read and gives back the
    /// file's path. `directory` null: the folder for temporary files. `extension` without its
    /// point. False, with no file left, when it cannot be written. `reserved` is not used.
    bool SaveFile(const char* directory, const char* extension, TSimpleString& fileName,
                  int reserved) const;

private:
    void GenerateFrom(const char* format, const FormatArgument* arguments, std::size_t count);

    char* m_text;           // null until a first character is stored
    std::size_t m_length;   // characters without the terminator
    std::size_t m_capacity; // characters that fit without the terminator
};

SIGNUTILS_API bool operator==(const TSimpleString& left, const TSimpleString& right) noexcept;
SIGNUTILS_API bool operator==(const TSimpleString& left, const char* right) noexcept;
