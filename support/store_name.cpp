#include "support/store_name.h"

#include "port/files.h"

#include <algorithm>

namespace support
{

namespace
{

constexpr std::string_view kRefusedCharacters = "<>:\"/\\|?*";

constexpr std::string_view kDevices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"};

// A digit behind them makes them devices; the superscript ones of Windows-1252 count too.
constexpr std::string_view kNumberedDevices[] = {"COM", "LPT"};
constexpr std::string_view kDeviceNumbers = "0123456789\xB9\xB2\xB3";

bool IsRefusedCharacter(char character)
{
    const auto value = static_cast<unsigned char>(character);
    return value < 0x20 || value == 0x7F ||
           kRefusedCharacters.find(character) != std::string_view::npos;
}

char UpperAscii(char letter)
{
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool IsDevice(std::string_view name)
{
    std::string base(name.substr(0, name.find('.')));
    base.erase(base.find_last_not_of(' ') + 1);
    std::transform(base.begin(), base.end(), base.begin(), UpperAscii);
    if (std::find(std::begin(kDevices), std::end(kDevices), base) != std::end(kDevices))
    {
        return true;
    }
    return base.size() == 4 && kDeviceNumbers.find(base.back()) != std::string_view::npos &&
           std::find(std::begin(kNumberedDevices), std::end(kNumberedDevices),
                     std::string_view(base).substr(0, 3)) != std::end(kNumberedDevices);
}

} // namespace

bool IsStoreName(std::string_view name)
{
    if (name.empty() || name.back() == '.' || name.back() == ' ')
    {
        return false;
    }
    return std::none_of(name.begin(), name.end(), IsRefusedCharacter) && !IsDevice(name);
}

std::string ExtensionOf(std::string_view path)
{
    const auto separator = std::find_if(path.rbegin(), path.rend(), port::IsPathSeparator);
    const std::string_view name =
        path.substr(static_cast<std::size_t>(std::distance(separator, path.rend())));
    const std::size_t point = name.rfind('.');
    return point == std::string_view::npos ? std::string() : std::string(name.substr(point + 1));
}

} // namespace support
