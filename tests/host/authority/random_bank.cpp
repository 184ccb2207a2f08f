#include "tests/host/authority/random_bank.h"

#include <array>
#include <string>

namespace testing_support
{

namespace
{

using Random = std::mt19937_64;

bool OneIn(Random& random, std::uint64_t count)
{
    return random() % count == 0;
}

template <typename Value, std::size_t Count>
const Value& AnyOf(Random& random, const std::array<Value, Count>& values)
{
    return values[random() % Count];
}

rulebook::Holder AnyHolder(Random& random, int number)
{
    rulebook::Holder holder;
    holder.huid = "H" + std::to_string(number);
    holder.lastName = "Last" + std::to_string(number);
    if (!OneIn(random, 6))
    {
        holder.firstName = "First" + std::to_string(number);
    }
    holder.opposition = OneIn(random, 6) ? "1" : "0";
    const std::uint64_t certificates = OneIn(random, 8) ? 0 : 1 + random() % 2;
    for (std::uint64_t each = 0; each < certificates; ++each)
    {
        const bool isShared = OneIn(random, 5);
        holder.certificates.push_back(
            {isShared ? "Shared" : holder.huid + " certificate " + std::to_string(each),
             std::nullopt, std::nullopt});
    }
    return holder;
}

std::optional<std::string> AnyHuid(Random& random, std::uint64_t holders)
{
    if (OneIn(random, 8))
    {
        return std::nullopt;
    }
    return "H" + std::to_string(1 + random() % holders);
}

rulebook::Rule AnyRule(Random& random, std::uint64_t holders)
{
    static const std::array<std::optional<std::string>, 7> amounts = {
        "1000.00", "5000", "1.234,56", "0", std::nullopt, "250000.005", "-7.5"};
    static const std::array<std::optional<std::int64_t>, 6> levels = {0, 0, 0, 1, 2, std::nullopt};
    return {AnyHuid(random, holders), AnyHuid(random, holders), OneIn(random, 2) ? 1 : 0,
            AnyOf(random, amounts), AnyOf(random, levels)};
}

rulebook::Contract AnyContract(Random& random, const std::string& cuid, std::uint64_t holders)
{
    static const std::array<std::int64_t, 5> profiles = {0, 0, 1, 1, 2};
    rulebook::Contract contract;
    contract.cuid = cuid;
    contract.terms.push_back({RandomBankKey(), 1, AnyOf(random, profiles),
                              OneIn(random, 12) ? 1 : 0, OneIn(random, 12) ? "1" : "0"});
    if (OneIn(random, 3))
    {
        contract.entry = {RandomBankKey(), OneIn(random, 3) ? 1 : 0, OneIn(random, 4) ? "1" : "0"};
    }
    const std::uint64_t rules = random() % 5;
    for (std::uint64_t each = 0; each < rules; ++each)
    {
        contract.rules.push_back(AnyRule(random, holders));
    }
    return contract;
}

} // namespace

rulebook::ContractKey RandomBankKey()
{
    return {"PARTNER", "SERVICE", "CLIENT", 9, 1};
}

rulebook::RuleBook RandomBank(Random& random)
{
    rulebook::RuleBook book;
    const std::uint64_t holders = 2 + random() % 3;
    for (std::uint64_t number = 1; number <= holders; ++number)
    {
        book.holders.push_back(AnyHolder(random, static_cast<int>(number)));
    }
    book.contracts.push_back(AnyContract(random, kRandomContract, holders));
    if (OneIn(random, 4))
    {
        book.contracts.push_back(AnyContract(random, "C-2", holders));
    }
    return book;
}

} // namespace testing_support
