#include "host/driver_facts.h"

#include <algorithm>

namespace host
{

bool NamesSqlite(const database::ConnectionString& connection)
{
    std::string driver = connection.Value("DRIVER");
    std::transform(driver.begin(), driver.end(), driver.begin(),
                   [](char letter) {
                       return letter >= 'A' && letter <= 'Z'
                                  ? static_cast<char>(letter + ('a' - 'A'))
                                  : letter;
                   });
    return driver.find("sqlite") != std::string::npos;
}

bool IsDriverMissing(const std::string& state)
{
    return state.rfind("IM", 0) == 0 || state == "01000";
}

} // namespace host
