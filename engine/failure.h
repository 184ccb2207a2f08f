#pragma once

#include <algorithm>
#include <string>
#include <utility>

namespace engine
{

/// Numbers of the engine's last error.
enum class FailureNumber : int
{
    None = 0,
    NotConnected = 100,
    UnknownWork = 101,
    BadParameters = 102,
    InputUnreadable = 110,
    InputChanged = 111,
    NotThisFormat = 120,
    Malformed = 121,
    Hostile = 122,
    OutputUnwritable = 130,
    OutOfMemory = 140,
    Unexpected = 150,
};

/// Ends a conversion: the file cannot be read as its format at all, or the work files cannot be
/// written. The text is one line, Windows-1252, and names file, line and remedy where it can.
class Failure
{
public:
    /// Control characters of the text become blanks: it may quote what the order file holds.
    Failure(FailureNumber number, std::string text) : m_number(number), m_text(std::move(text))
    {
        std::replace_if(
            m_text.begin(), m_text.end(),
            [](char c) { return static_cast<unsigned char>(c) < 0x20U || c == 0x7F; }, ' ');
    }

    FailureNumber Number() const noexcept { return m_number; }
    const std::string& Text() const noexcept { return m_text; }

private:
    FailureNumber m_number;
    std::string m_text;
};

} // namespace engine
