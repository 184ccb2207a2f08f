#include "host/doctor/driver.h"

#include "host/suggestion.h"
#include "host/text.h"
#include "port/files.h"
#include "support/codepage.h"

#include <algorithm>
#include <cctype>

namespace doctor
{

namespace
{

constexpr const char* kDriverCheck = "driver";

struct Package
{
    const char* word; ///< in the driver's name, small letters
    const char* package;
};

constexpr Package kPackages[] = {
    {"sqlite", "libsqliteodbc"}, {"postgres", "odbc-postgresql"}, {"psql", "odbc-postgresql"},
    {"maria", "odbc-mariadb"},   {"mysql", "odbc-mariadb"},       {"sql server", "tdsodbc"},
    {"freetds", "tdsodbc"},
};

std::string LowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

bool IsPath(const std::string& driver)
{
    return std::any_of(driver.begin(), driver.end(), port::IsPathSeparator);
}

std::string Listed(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
    {
        text += (text.empty() ? "" : ", ") + host::Printable(support::Utf8FromNarrow(name));
    }
    return text;
}

Finding CheckDriverFile(const std::string& driver)
{
    const std::string shown = host::Quoted(support::Utf8FromNarrow(driver));
    if (port::FileExists(driver.c_str()))
    {
        return {kDriverCheck, Outcome::Ok, "the driver's file " + shown + " is there", ""};
    }
    return {kDriverCheck, Outcome::Failed, "there is no file " + shown,
            "Correct Driver= in the connection string: give the name of an installed driver, which "
            "odbcinst -q -d lists, or the path of one."};
}

} // namespace

std::string PackageAdvice(const std::string& driver)
{
    const std::string name = LowerCase(driver);
    const auto* const found = std::find_if(std::begin(kPackages), std::end(kPackages),
                                           [&name](const Package& each)
                                           { return name.find(each.word) != std::string::npos; });
    return found == std::end(kPackages) ? std::string()
                                        : std::string("apt install ") + found->package;
}

Finding CheckDriverName(const database::ConnectionString& connection,
                        const std::optional<std::vector<std::string>>& installed)
{
    const std::string driver = connection.Value("DRIVER");
    if (driver.empty())
    {
        return {kDriverCheck, Outcome::Ok,
                "the data source " +
                    host::Quoted(support::Utf8FromNarrow(connection.Value("DSN"))) +
                    " names it, see odbc.ini",
                ""};
    }
    if (IsPath(driver))
    {
        return CheckDriverFile(driver);
    }
    if (!installed)
    {
        return {kDriverCheck, Outcome::Failed, "the ODBC driver manager does not answer",
                "Install it: apt install unixodbc."};
    }
    const bool isInstalled = std::any_of(installed->begin(), installed->end(),
                                         [&driver](const std::string& each)
                                         { return LowerCase(each) == LowerCase(driver); });
    const std::string shown = host::Quoted(support::Utf8FromNarrow(driver));
    if (isInstalled)
    {
        return {kDriverCheck, Outcome::Ok, shown + " is installed", ""};
    }
    const std::string package = PackageAdvice(driver);
    return {kDriverCheck, Outcome::Failed,
            shown + " is not installed; " +
                (installed->empty() ? std::string("no driver is")
                                    : "installed are: " + Listed(*installed)),
            "Correct Driver= in the connection string" +
                (package.empty() ? ", or install the product's ODBC driver"
                                 : ", or install the driver: " + package) +
                "." + host::DidYouMean(driver, *installed, "")};
}

} // namespace doctor
