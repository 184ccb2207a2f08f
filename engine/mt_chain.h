#pragma once

#include <string>
#include <string_view>

namespace engine
{

/// The chains of messages that field 28D numbers: "2/3" is the second of three.
class MtChain
{
public:
    enum class Result
    {
        Follows,
        OutOfOrder, ///< the message before it is missing, or that of another chain
        Malformed,
    };

    Result Take(std::string_view field);
    /// Whether the chain under way lacks its last messages.
    bool IsOpen() const noexcept { return m_index < m_total; }
    /// The message taken last, as "2/3".
    std::string Position() const;

private:
    unsigned m_index = 0;
    unsigned m_total = 0;
};

} // namespace engine
