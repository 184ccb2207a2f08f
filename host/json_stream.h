#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host
{

/// Writes one JSON object to standard output piece by piece, laid out as PrintJson does it: for
/// answers too long to be held whole. Texts are UTF-8; malformed bytes become U+FFFD.
class JsonStream
{
public:
    /// Opens the object.
    JsonStream();
    JsonStream(const JsonStream&) = delete;
    JsonStream& operator=(const JsonStream&) = delete;

    // `key` names a member of an object; elements of an array have none.
    void BeginObject(std::string_view key = {});
    void BeginArray(std::string_view key = {});
    /// Ends the array or object opened last.
    void End();

    void Text(std::string_view key, std::string_view text);
    void Flag(std::string_view key, bool value);
    void Null(std::string_view key);
    /// The number digit by digit, so that none is lost; a text that is no number as a text.
    void Number(std::string_view key, std::string_view digits);

    /// A text, a number, true, false or null.
    void Scalar(std::string_view key, const nlohmann::ordered_json& value);

    /// Ends the object and the line.
    void Finish();

private:
    struct Level
    {
        char closing;
        bool isEmpty;
    };

    void Open(std::string_view key, char opening, char closing);
    void Value(std::string_view key, std::string_view written);
    void StartMember(std::string_view key);
    void NewLine();

    std::vector<Level> m_levels;
    std::string m_pending;
};

} // namespace host
