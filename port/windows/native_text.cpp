#include "port/windows/native_text.h"

#include "port/code_page.h"
#include "port/kernel.h"

#include <limits>

namespace port
{

namespace
{

// Room for a short file name that a call may add to a folder's path.
constexpr std::size_t kLongestPlainPath = MAX_PATH - 13;
constexpr std::wstring_view kLongPrefix = L"\\\\?\\";
constexpr std::wstring_view kLongServerPrefix = L"\\\\?\\UNC\\";
constexpr std::wstring_view kServerStart = L"\\\\";

bool IsSurrogate(wchar_t unit)
{
    return unit >= 0xD800 && unit <= 0xDFFF;
}

std::wstring FullPath(const std::wstring& path)
{
    std::wstring full(path.size() + MAX_PATH, L'\0');
    DWORD length =
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length > full.size())
    {
        full.resize(length);
        length = GetFullPathNameW(path.c_str(), length, full.data(), nullptr);
    }
    full.resize(length);
    return full;
}

std::wstring LongPath(const std::wstring& path)
{
    if (path.compare(0, kLongPrefix.size(), kLongPrefix) == 0)
    {
        return path;
    }
    const std::wstring full = FullPath(path);
    if (full.empty())
    {
        return path;
    }
    if (full.compare(0, kServerStart.size(), kServerStart) == 0)
    {
        return std::wstring(kLongServerPrefix) + full.substr(kServerStart.size());
    }
    return std::wstring(kLongPrefix) + full;
}

int LengthForCall(std::size_t size)
{
    return size > static_cast<std::size_t>(std::numeric_limits<int>::max())
               ? std::numeric_limits<int>::max()
               : static_cast<int>(size);
}

} // namespace

std::wstring ToNative(std::string_view text)
{
    std::wstring native;
    native.reserve(text.size());
    for (const char byte : text)
    {
        native += static_cast<wchar_t>(CharacterOf(byte));
    }
    return native;
}

std::wstring NativePath(const char* path)
{
    std::wstring native = ToNative(path == nullptr ? "" : path);
    return native.size() < kLongestPlainPath ? native : LongPath(native);
}

bool TryFromNative(std::wstring_view native, std::string& text)
{
    text.clear();
    bool complete = true;
    for (std::size_t index = 0; index < native.size(); ++index)
    {
        char byte = '?';
        if (!TryByteOf(native[index], byte))
        {
            complete = false;
            // The two halves of a pair are one character.
            const bool isPair = IsSurrogate(native[index]) && index + 1 < native.size() &&
                                IsSurrogate(native[index + 1]);
            index += isPair ? 1U : 0U;
        }
        text += byte;
    }
    return complete;
}

std::string FromNative(std::wstring_view native)
{
    std::string text;
    TryFromNative(native, text);
    return text;
}

std::string Utf8FromNative(std::wstring_view native)
{
    const int units = LengthForCall(native.size());
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, native.data(), units, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, native.data(), units, text.data(), size, nullptr, nullptr);
    return text;
}

std::wstring NativeFromUtf8(std::string_view text)
{
    const int bytes = LengthForCall(text.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
    std::wstring native(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, native.data(), size);
    return native;
}

std::wstring NativeVariable(const wchar_t* name)
{
    std::wstring value;
    // Another thread may make it longer between the two calls.
    for (DWORD size = GetEnvironmentVariableW(name, nullptr, 0); size > value.size();)
    {
        value.resize(size);
        size = GetEnvironmentVariableW(name, value.data(), size);
        if (size < value.size())
        {
            value.resize(size);
            return value;
        }
    }
    return {};
}

} // namespace port
