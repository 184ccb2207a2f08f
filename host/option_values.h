#pragma once

#include <map>
#include <string>

namespace host
{

/// One setting as it was given, UTF-8, with where it came from: "option --partner",
/// "SIGNCHECK_DB", "bank.toml, line 4, field partner".
struct OptionValue
{
    std::string text;
    std::string origin;
};

/// The settings of one command, whatever their source. What is set first stays, so sources are
/// added in order of precedence: command line, environment, file.
class OptionValues
{
public:
    void AddUnlessThere(const std::string& name, OptionValue value);

    /// Null when it was not given.
    const OptionValue* Find(const std::string& name) const;
    bool IsOn(const std::string& flag) const;

private:
    std::map<std::string, OptionValue> m_values;
};

/// The text of a flag that is switched on.
inline constexpr const char* kFlagOn = "true";
inline constexpr const char* kFlagOff = "false";

} // namespace host
