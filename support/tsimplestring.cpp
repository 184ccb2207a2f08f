#include "support/tsimplestring.h"

#include "support/codepage.h"
#include "support/format.h"
#include "support/messages.h"
#include "support/temporary_file.h"
#include "support/text_buffer.h"

#include <string>
#include <utility>

namespace
{

using Buffer = support::TextBuffer<char>;

} // namespace

TSimpleString::TSimpleString() noexcept : m_text(nullptr), m_length(0), m_capacity(0) {}

TSimpleString::TSimpleString(const char* text) : TSimpleString()
{
    Buffer(m_text, m_length, m_capacity).Assign(Buffer::ViewOf(text));
}

TSimpleString::TSimpleString(const char* text, std::size_t length) : TSimpleString()
{
    Buffer(m_text, m_length, m_capacity).Assign(Buffer::ViewOf(text, length));
}

TSimpleString::TSimpleString(const TSimpleString& other)
    : TSimpleString(other.m_text, other.m_length)
{
}

TSimpleString::TSimpleString(TSimpleString&& other) noexcept : TSimpleString()
{
    Buffer(m_text, m_length, m_capacity).Take(other.m_text, other.m_length, other.m_capacity);
}

TSimpleString::~TSimpleString()
{
    Buffer(m_text, m_length, m_capacity).Release();
}

// The buffer copes with its own text.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp)
TSimpleString& TSimpleString::operator=(const TSimpleString& other)
{
    Buffer(m_text, m_length, m_capacity).Assign(Buffer::ViewOf(other.m_text, other.m_length));
    return *this;
}

TSimpleString& TSimpleString::operator=(TSimpleString&& other) noexcept
{
    Buffer(m_text, m_length, m_capacity).Take(other.m_text, other.m_length, other.m_capacity);
    return *this;
}

TSimpleString& TSimpleString::operator=(const char* text)
{
    Buffer(m_text, m_length, m_capacity).Assign(Buffer::ViewOf(text));
    return *this;
}

const char* TSimpleString::SafeGetString() const noexcept
{
    return m_text == nullptr ? "" : m_text;
}

std::size_t TSimpleString::GetLength() const noexcept
{
    return m_length;
}

bool TSimpleString::IsEmpty() const noexcept
{
    return m_length == 0;
}

void TSimpleString::Empty() noexcept
{
    Buffer(m_text, m_length, m_capacity).Empty();
}

TSimpleString& TSimpleString::Append(const char* text)
{
    Buffer(m_text, m_length, m_capacity).Append(Buffer::ViewOf(text));
    return *this;
}

TSimpleString& TSimpleString::Append(const char* text, std::size_t length)
{
    Buffer(m_text, m_length, m_capacity).Append(Buffer::ViewOf(text, length));
    return *this;
}

TSimpleString& TSimpleString::operator+=(const TSimpleString& text)
{
    return Append(text.m_text, text.m_length);
}

void TSimpleString::Trim(int mode)
{
    Buffer(m_text, m_length, m_capacity).Trim(mode);
}

void TSimpleString::ReplaceAll(const char* from, const char* to)
{
    Buffer(m_text, m_length, m_capacity).ReplaceAll(Buffer::ViewOf(from), Buffer::ViewOf(to));
}

void TSimpleString::LoadStringA(unsigned int messageNumber)
{
    const std::wstring message = support::Message(messageNumber, nullptr, 0);
    Buffer(m_text, m_length, m_capacity).Assign(support::NarrowFromWide(message));
}

void TSimpleString::FromWide(const wchar_t* text)
{
    const std::wstring_view wide = text == nullptr ? L"" : text;
    Buffer(m_text, m_length, m_capacity).Assign(support::NarrowFromWide(wide));
}

void TSimpleString::EncodeUtf8()
{
    Buffer buffer(m_text, m_length, m_capacity);
    buffer.Assign(support::Utf8FromNarrow(buffer.Text()));
}

bool TSimpleString::SaveFile(const char* directory, const char* extension, TSimpleString& fileName,
                             int /*reserved*/) const
{
    const std::string path = support::TemporaryPath(directory, extension);
    if (path.empty())
    {
        return false;
    }
    // The name is stored before the file exists: what fails later leaves no file behind.
    TSimpleString name(path.c_str(), path.size());
    if (!support::WriteNewFile(path, Buffer::ViewOf(m_text, m_length)))
    {
        return false;
    }
    fileName = std::move(name);
    return true;
}

void TSimpleString::GenerateFrom(const char* format, const FormatArgument* arguments,
                                 std::size_t count)
{
    Buffer(m_text, m_length, m_capacity).Assign(support::FormatNarrow(format, arguments, count));
}

FormatArgument::FormatArgument(const TSimpleString& value) noexcept
    : kind(Kind::Narrow), narrow(value.SafeGetString())
{
}

bool operator==(const TSimpleString& left, const TSimpleString& right) noexcept
{
    return Buffer::ViewOf(left.SafeGetString(), left.GetLength()) ==
           Buffer::ViewOf(right.SafeGetString(), right.GetLength());
}

bool operator==(const TSimpleString& left, const char* right) noexcept
{
    return Buffer::ViewOf(left.SafeGetString(), left.GetLength()) == Buffer::ViewOf(right);
}
