#include "services/system_error.h"

#include "port/kernel.h"
#include "support/format.h"

#include <algorithm>

namespace services
{

namespace
{

struct ErrorWords
{
    std::uint32_t code;
    const char* words;
};

constexpr ErrorWords kErrorWords[] = {
    {ERROR_FILE_NOT_FOUND, "file not found"},
    {ERROR_PATH_NOT_FOUND, "path not found"},
    {ERROR_TOO_MANY_OPEN_FILES, "too many open files"},
    {ERROR_ACCESS_DENIED, "access denied"},
    {ERROR_WRITE_FAULT, "write fault"},
    {ERROR_READ_FAULT, "read fault"},
    {ERROR_FILE_EXISTS, "file exists"},
    {ERROR_DISK_FULL, "disk full"},
    {ERROR_INVALID_NAME, "invalid name"},
    {ERROR_INVALID_OWNER, "owned by another user"},
    {ERROR_INVALID_ACL, "every user may write there"},
};

bool IsControl(char character)
{
    const auto value = static_cast<unsigned char>(character);
    return value < 0x20 || value == 0x7F;
}

} // namespace

std::string SystemErrorText(std::uint32_t systemCode)
{
    const auto* const known =
        std::find_if(std::begin(kErrorWords), std::end(kErrorWords),
                     [systemCode](const ErrorWords& entry) { return entry.code == systemCode; });
    if (known == std::end(kErrorWords))
    {
        return support::FormatA("system error %u", systemCode);
    }
    return support::FormatA("%s (system error %u)", known->words, systemCode);
}

std::string OneLine(std::string_view text)
{
    std::string line(text);
    std::replace_if(line.begin(), line.end(), IsControl, '?');
    return line;
}

} // namespace services
