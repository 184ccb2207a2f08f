#include "benchmarks/check_statements.h"

#include "benchmarks/null_driver/null_driver.h"
#include "benchmarks/sample_check.h"

#include <atomic>

namespace benchmarks
{

namespace
{

constexpr std::u16string_view kBeforeKey = u"VALUES ('";
constexpr std::size_t kKeyLength = 36;
std::atomic<std::uint64_t> g_lastKey = 0;

} // namespace

std::vector<std::u16string> StatementsOfACheck(std::size_t rules)
{
    const null_driver::NullDriver driver;
    const std::string connexionString = driver.ConnexionString(rules);
    // The first check connects; from the second on they are all alike.
    SampleCheck(connexionString);
    std::vector<std::u16string> statements =
        driver.StatementsOf([&] { SampleCheck(connexionString); });
    std::erase(statements, u"SELECT 1");
    return statements;
}

bool IsEvent(std::u16string_view statement)
{
    return statement.starts_with(u"INSERT INTO EVT_");
}

KeyPlace PlaceOfKey(std::u16string_view event)
{
    return {event.find(kBeforeKey) + kBeforeKey.size(), kKeyLength};
}

void RenewKey(std::u16string& event)
{
    std::size_t at = PlaceOfKey(event).begin + kKeyLength;
    std::uint64_t key = ++g_lastKey;
    for (std::size_t digit = 0; digit < kKeyLength; ++digit, key /= 10)
    {
        event[--at] = static_cast<char16_t>(u'0' + key % 10);
    }
}

std::string Ascii(std::u16string_view statement)
{
    std::string text;
    text.reserve(statement.size());
    for (const char16_t unit : statement)
    {
        text.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    }
    return text;
}

} // namespace benchmarks
