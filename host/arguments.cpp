#include "host/arguments.h"

#include <cstdlib>

namespace host
{

std::vector<std::string> ProgramArguments(int count, char** values)
{
    if (count < 2)
    {
        return {};
    }
    return {values + 1, values + count};
}

std::string EnvironmentVariable(const char* name)
{
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

} // namespace host
