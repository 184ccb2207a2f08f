#include "support/tsimplestringw.h"

#include "support/codepage.h"
#include "support/format.h"
#include "support/messages.h"
#include "support/text_buffer.h"

#include <string_view>

namespace
{

using Buffer = support::TextBuffer<wchar_t>;

} // namespace

TSimpleStringW::TSimpleStringW() noexcept : m_text(nullptr), m_length(0), m_capacity(0) {}

TSimpleStringW::TSimpleStringW(const wchar_t* text) : TSimpleStringW()
{
    Buffer(m_text, m_length, m_capacity).Assign(Buffer::ViewOf(text));
}

TSimpleStringW::TSimpleStringW(const wchar_t* text, std::size_t length) : TSimpleStringW()
{
    Buffer(m_text, m_length, m_capacity).Assign(Buffer::ViewOf(text, length));
}

TSimpleStringW::TSimpleStringW(const TSimpleStringW& other)
    : TSimpleStringW(other.m_text, other.m_length)
{
}

TSimpleStringW::TSimpleStringW(TSimpleStringW&& other) noexcept : TSimpleStringW()
{
    Buffer(m_text, m_length, m_capacity).Take(other.m_text, other.m_length, other.m_capacity);
}

TSimpleStringW::~TSimpleStringW()
{
    Buffer(m_text, m_length, m_capacity).Release();
}

// The buffer copes with its own text.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp)
TSimpleStringW& TSimpleStringW::operator=(const TSimpleStringW& other)
{
    Buffer(m_text, m_length, m_capacity).Assign(Buffer::ViewOf(other.m_text, other.m_length));
    return *this;
}

TSimpleStringW& TSimpleStringW::operator=(TSimpleStringW&& other) noexcept
{
    Buffer(m_text, m_length, m_capacity).Take(other.m_text, other.m_length, other.m_capacity);
    return *this;
}

TSimpleStringW& TSimpleStringW::operator=(const wchar_t* text)
{
    Buffer(m_text, m_length, m_capacity).Assign(Buffer::ViewOf(text));
    return *this;
}

const wchar_t* TSimpleStringW::SafeGetString() const noexcept
{
    return m_text == nullptr ? L"" : m_text;
}

std::size_t TSimpleStringW::GetLength() const noexcept
{
    return m_length;
}

bool TSimpleStringW::IsEmpty() const noexcept
{
    return m_length == 0;
}

void TSimpleStringW::Empty() noexcept
{
    Buffer(m_text, m_length, m_capacity).Empty();
}

TSimpleStringW& TSimpleStringW::Append(const wchar_t* text)
{
    Buffer(m_text, m_length, m_capacity).Append(Buffer::ViewOf(text));
    return *this;
}

TSimpleStringW& TSimpleStringW::Append(const wchar_t* text, std::size_t length)
{
    Buffer(m_text, m_length, m_capacity).Append(Buffer::ViewOf(text, length));
    return *this;
}

TSimpleStringW& TSimpleStringW::operator+=(const TSimpleStringW& text)
{
    return Append(text.m_text, text.m_length);
}

void TSimpleStringW::Trim(int mode)
{
    Buffer(m_text, m_length, m_capacity).Trim(mode);
}

void TSimpleStringW::ReplaceAll(const wchar_t* from, const wchar_t* to)
{
    Buffer(m_text, m_length, m_capacity).ReplaceAll(Buffer::ViewOf(from), Buffer::ViewOf(to));
}

void TSimpleStringW::FromNarrow(const char* text)
{
    const std::string_view narrow = text == nullptr ? "" : text;
    Buffer(m_text, m_length, m_capacity).Assign(support::WideFromNarrow(narrow));
}

void TSimpleStringW::GenerateFrom(const wchar_t* format, const FormatArgument* arguments,
                                  std::size_t count)
{
    Buffer(m_text, m_length, m_capacity).Assign(support::FormatWide(format, arguments, count));
}

void TSimpleStringW::GenerateMessage(unsigned int messageNumber, const FormatArgument* arguments,
                                     std::size_t count)
{
    Buffer(m_text, m_length, m_capacity).Assign(support::Message(messageNumber, arguments, count));
}

FormatArgument::FormatArgument(const TSimpleStringW& value) noexcept
    : kind(Kind::Wide), wide(value.SafeGetString())
{
}

bool operator==(const TSimpleStringW& left, const TSimpleStringW& right) noexcept
{
    return Buffer::ViewOf(left.SafeGetString(), left.GetLength()) ==
           Buffer::ViewOf(right.SafeGetString(), right.GetLength());
}

bool operator==(const TSimpleStringW& left, const wchar_t* right) noexcept
{
    return Buffer::ViewOf(left.SafeGetString(), left.GetLength()) == Buffer::ViewOf(right);
}
