#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace benchmarks
{

/// The statements of a SampleCheck on a bank of so many rules, in their order, without the pool's
/// tests for life. They are taken from a check on the null driver.
std::vector<std::u16string> StatementsOfACheck(std::size_t rules);

/// Whether the statement records a journal event, whose key can be used once only.
bool IsEvent(std::u16string_view statement);

/// Where the key of an event stands in its statement, and how long it is.
struct KeyPlace
{
    std::size_t begin;
    std::size_t length;
};
KeyPlace PlaceOfKey(std::u16string_view event);

/// Gives the event a key that no other event of this process has.
void RenewKey(std::u16string& event);

/// The statement for those who take narrow texts: letters outside ASCII become '?', for what is
/// stored is not compared.
std::string Ascii(std::u16string_view statement);

} // namespace benchmarks
