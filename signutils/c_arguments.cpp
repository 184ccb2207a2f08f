#include "signutils/c_arguments.h"

#include "signutils/c_call.h"
#include "support/codepage.h"
#include "support/format.h"

#include <string_view>

namespace
{

using signutils::CallRefused;

/// Positions are told from 1 on.
std::string Position(std::size_t index)
{
    return std::to_string(index + 1);
}

std::string_view WellFormed(const char* name, const char* utf8)
{
    if (utf8 == nullptr)
    {
        signutils::RefuseNull(name, "a text, if only an empty one");
    }
    if (const auto malformed = support::FindMalformedUtf8(utf8); malformed)
    {
        throw CallRefused{SIGNUTILS_NOT_UTF8, std::string(name) + ": byte " + Position(*malformed) +
                                                  " is no well-formed UTF-8. Give texts in UTF-8."};
    }
    return utf8;
}

const char* NeverNull(const char* text)
{
    return text == nullptr ? "" : text;
}

} // namespace

namespace signutils
{

void RefuseNull(const char* name, const char* expected)
{
    throw CallRefused{SIGNUTILS_NULL_ARGUMENT,
                      std::string(name) + ": is null. Give " + expected + "."};
}

void RefuseValue(const char* name, const std::string& reason)
{
    throw CallRefused{SIGNUTILS_BAD_ARGUMENT, std::string(name) + ": " + reason};
}

void RequireFits(const char* name, std::size_t length, const FieldLimit& limit)
{
    if (length > limit.longest)
    {
        throw CallRefused{SIGNUTILS_TEXT_TOO_LONG,
                          std::string(name) + ": has " + std::to_string(length) +
                              " characters, but at most " + std::to_string(limit.longest) +
                              " fit. " + limit.remedy};
    }
}

std::string Narrow(const char* name, const char* utf8)
{
    const std::wstring wide = Wide(name, utf8);
    if (const auto found = support::FindWithoutNarrowPlace(wide); found)
    {
        throw CallRefused{
            SIGNUTILS_NOT_WINDOWS_1252,
            std::string(name) + ": character " + Position(found->index) +
                support::FormatA(" (U+%04X)", static_cast<unsigned>(found->character)) +
                " has no place in Windows-1252. Replace it."};
    }
    return support::NarrowFromWide(wide);
}

std::string NarrowUpTo(const char* name, const char* utf8, const FieldLimit& limit)
{
    std::string narrow = Narrow(name, utf8);
    RequireFits(name, narrow.size(), limit);
    return narrow;
}

std::string OptionalNarrow(const char* name, const char* utf8)
{
    return Narrow(name, NeverNull(utf8));
}

std::string OptionalNarrowUpTo(const char* name, const char* utf8, const FieldLimit& limit)
{
    return NarrowUpTo(name, NeverNull(utf8), limit);
}

std::wstring Wide(const char* name, const char* utf8)
{
    return support::WideFromUtf8(WellFormed(name, utf8));
}

std::string Utf8(const char* name, const char* utf8)
{
    return std::string(WellFormed(name, utf8));
}

} // namespace signutils
