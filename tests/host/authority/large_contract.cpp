#include "tests/host/authority/large_contract.h"

#include <string>

namespace testing_support
{

namespace
{

constexpr std::size_t kHeights = 3;

std::string Limit(std::size_t thousands)
{
    return std::to_string(thousands) + "000.00";
}

std::string Huid(std::size_t holder)
{
    return "LARGE-" + std::to_string(holder);
}

} // namespace

rulebook::RuleBook LargeContract(std::size_t holders)
{
    const rulebook::ContractKey key = {"LARGE", "CCT", "LARGE", 9, 1};
    rulebook::RuleBook book;
    rulebook::Contract& contract = book.contracts.emplace_back();
    contract.cuid = "C-9001";
    contract.terms.push_back({key, 1, 2, 0, "0"});
    for (std::size_t holder = 0; holder < holders; ++holder)
    {
        const std::string number = std::to_string(holder);
        book.holders.push_back(
            {Huid(holder), "LARGE", "Holder", number, "0", {{"Holder " + number, {}, {}}}});
        const std::size_t height = 1 + holder % kHeights;
        contract.rules.push_back({Huid(holder), std::nullopt, 1, Limit(height), 0});
        contract.rules.push_back(
            {Huid(holder), Huid((holder + 1) % holders), 0, Limit(5 * height), 0});
    }
    return book;
}

} // namespace testing_support
