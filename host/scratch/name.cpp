#include "host/scratch/name.h"

#include "port/environment.h"
#include "port/kernel.h"
#include "support/cttime.h"
#include "support/format.h"
#include "support/numbers.h"

#include <string_view>
#include <vector>

namespace scratch
{

namespace
{

constexpr std::size_t kUserKept = 12;

// Letters and digits only: the name becomes part of statements and of a path.
std::string User()
{
    std::string user;
    for (const char* const variable : {"USER", "LOGNAME", "USERNAME"})
    {
        for (const char letter : port::Environment(variable))
        {
            const bool isCapital = letter >= 'A' && letter <= 'Z';
            if (isCapital || (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9'))
            {
                user += isCapital ? static_cast<char>(letter - 'A' + 'a') : letter;
            }
        }
        if (!user.empty())
        {
            return user.substr(0, kUserKept);
        }
    }
    return "nobody";
}

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr std::string_view kUserLetters = "abcdefghijklmnopqrstuvwxyz0123456789";

bool IsMadeOf(std::string_view text, std::string_view letters, std::size_t shortest,
              std::size_t longest)
{
    return text.size() >= shortest && text.size() <= longest &&
           text.find_first_not_of(letters) == std::string_view::npos;
}

std::vector<std::string> PartsOf(std::string_view text)
{
    std::vector<std::string> parts(1);
    for (const char letter : text)
    {
        if (letter == '_')
        {
            parts.emplace_back();
        }
        else
        {
            parts.back() += letter;
        }
    }
    return parts;
}

} // namespace

std::string NewName()
{
    const port::LocalTime now = port::ToLocalTime(CTTime::GetTickCount().GetTime());
    std::uint32_t random = 0;
    port::RandomBytes(&random, sizeof random);
    return kNamePrefix +
           support::FormatA("%04d%02d%02d_%02d%02d%02d_%u_", now.year, now.month, now.day, now.hour,
                            now.minute, now.second,
                            static_cast<std::uint32_t>(GetCurrentProcessId())) +
           User() + support::FormatA("_%08x", random);
}

std::optional<NameParts> ReadName(const std::string& name)
{
    const std::string_view prefix = kNamePrefix;
    if (!name.starts_with(prefix))
    {
        return std::nullopt;
    }
    const auto parts = PartsOf(std::string_view(name).substr(prefix.size()));
    if (parts.size() != 5 || !IsMadeOf(parts[0], kDigits, 8, 8) ||
        !IsMadeOf(parts[1], kDigits, 6, 6) || !IsMadeOf(parts[2], kDigits, 1, 10) ||
        !IsMadeOf(parts[3], kUserLetters, 1, kUserKept) || !IsMadeOf(parts[4], kHexDigits, 8, 8))
    {
        return std::nullopt;
    }
    const std::string& day = parts[0];
    const std::string& time = parts[1];
    return NameParts{day.substr(0, 4) + "-" + day.substr(4, 2) + "-" + day.substr(6) + " " +
                         time.substr(0, 2) + ":" + time.substr(2, 2) + ":" + time.substr(4),
                     static_cast<std::uint32_t>(support::ToInt64(parts[2].c_str())), parts[3]};
}

} // namespace scratch
