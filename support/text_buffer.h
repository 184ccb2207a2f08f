#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace support
{

/// The storage code of TSimpleString and TSimpleStringW, working on their members. Every change
/// that needs memory obtains it first, so that a failure leaves the text as it was; texts handed in
/// may be parts of the text that is changed.
template <typename Character>
class TextBuffer
{
public:
    using View = std::basic_string_view<Character>;

    TextBuffer(Character*& text, std::size_t& length, std::size_t& capacity) noexcept
        : m_text(text), m_length(length), m_capacity(capacity)
    {
    }

    /// A null text counts as empty.
    static View ViewOf(const Character* text) noexcept { return text == nullptr ? View() : text; }
    static View ViewOf(const Character* text, std::size_t length) noexcept
    {
        return text == nullptr ? View() : View(text, length);
    }

    [[nodiscard]] View Text() const noexcept
    {
        return m_text == nullptr ? View() : View(m_text, m_length);
    }

    void Assign(View text)
    {
        if (text.size() > m_capacity)
        {
            Replace(View(), text, text.size());
            return;
        }
        Place(0, text);
    }

    void Append(View text)
    {
        const std::size_t room = kLargest - m_length;
        if (text.size() > room)
        {
            throw std::bad_array_new_length();
        }
        const std::size_t needed = m_length + text.size();
        if (needed > m_capacity)
        {
            Replace(Text(), text, std::max(needed, std::min(m_capacity * 2, kLargest)));
            return;
        }
        Place(m_length, text);
    }

    /// 1: at the left end, 2: at the right end, 3: at both.
    void Trim(int mode) noexcept
    {
        constexpr unsigned left = 1;
        constexpr unsigned right = 2;
        const auto ends = static_cast<unsigned>(mode);
        View rest = Text();
        while ((ends & left) != 0 && !rest.empty() && IsTrimmed(rest.front()))
        {
            rest.remove_prefix(1);
        }
        while ((ends & right) != 0 && !rest.empty() && IsTrimmed(rest.back()))
        {
            rest.remove_suffix(1);
        }
        Place(0, rest);
    }

    void ReplaceAll(View from, View to)
    {
        const View text = Text();
        std::size_t found = from.empty() ? View::npos : text.find(from);
        if (found == View::npos)
        {
            return;
        }
        std::basic_string<Character> result;
        std::size_t done = 0;
        for (; found != View::npos; found = text.find(from, done))
        {
            result.append(text, done, found - done).append(to);
            done = found + from.size();
        }
        result.append(text, done);
        Assign(result);
    }

    void Empty() noexcept { Place(0, View()); }

    /// Gives the memory back.
    void Release() noexcept
    {
        const std::unique_ptr<Character[]> owner(m_text);
        m_text = nullptr;
        m_length = 0;
        m_capacity = 0;
    }

    /// Takes over the other text, which is empty afterwards.
    void Take(Character*& text, std::size_t& length, std::size_t& capacity) noexcept
    {
        if (&text == &m_text)
        {
            return;
        }
        Release();
        std::swap(m_text, text);
        std::swap(m_length, length);
        std::swap(m_capacity, capacity);
    }

private:
    static constexpr std::size_t kLargest =
        std::numeric_limits<std::size_t>::max() / sizeof(Character) / 2;

    static bool IsTrimmed(Character character) noexcept
    {
        return character == Character(' ') || character == Character('\t') ||
               character == Character('\r') || character == Character('\n');
    }

    /// Puts a text that fits at a position and ends there.
    void Place(std::size_t position, View text) noexcept
    {
        if (m_text == nullptr)
        {
            return;
        }
        std::char_traits<Character>::move(m_text + position, text.data(), text.size());
        m_length = position + text.size();
        m_text[m_length] = Character();
    }

    void Replace(View first, View second, std::size_t capacity)
    {
        if (capacity > kLargest)
        {
            throw std::bad_array_new_length();
        }
        std::unique_ptr<Character[]> fresh(new Character[capacity + 1]);
        first.copy(fresh.get(), first.size());
        second.copy(fresh.get() + first.size(), second.size());
        const std::size_t length = first.size() + second.size();
        fresh[length] = Character();
        const std::unique_ptr<Character[]> owner(m_text);
        m_text = fresh.release();
        m_length = length;
        m_capacity = capacity;
    }

    Character*& m_text;
    std::size_t& m_length;
    std::size_t& m_capacity;
};

} // namespace support
