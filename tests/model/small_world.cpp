#include "tests/model/small_world.h"

#include <utility>

namespace model
{

namespace
{

constexpr std::size_t kHolders = 3;
constexpr std::size_t kNames = kHolders + 1; ///< a stranger, or nobody
constexpr std::size_t kMostSigners = 3;
constexpr std::size_t kAmounts = 5;
constexpr std::size_t kOppositions = 1U << kHolders;
constexpr std::size_t kLists = 1 + kNames + kNames * kNames + kNames * kNames * kNames;

constexpr double kLimit = 1000.0;
/// Nothing, below, at, one unit above and far above the limit.
constexpr double kAmountOf[kAmounts] = {0.0, 999.999999, kLimit, 1000.000001, 5000.0};

/// Takes the choice among `count` off a running number.
std::size_t Take(std::size_t& number, std::size_t count)
{
    return std::exchange(number, number / count) % count;
}

Text NameOf(std::size_t holder, const Text& tag)
{
    constexpr const wchar_t* names[kNames] = {L"ANA", L"BEN", L"EVA", L"STRANGER"};
    return names[holder] + tag;
}

Text HolderId(std::size_t holder, const Text& tag)
{
    return L"H" + std::to_wstring(holder) + tag;
}

/// Lists by their length, the shortest first.
Text ListAt(std::size_t number, const Text& tag)
{
    std::size_t length = 0;
    for (std::size_t lists = 1; number >= lists; lists *= kNames)
    {
        number -= lists;
        ++length;
    }
    Text list;
    for (std::size_t index = 0; index < length; ++index)
    {
        list += (index == 0 ? L"" : L";") + NameOf(Take(number, kNames), tag);
    }
    return list;
}

} // namespace

static_assert(kMostSigners == 3, "the number of lists is written for three");

std::size_t EnvironmentCount()
{
    return kLists * kAmounts * kOppositions * 2;
}

Environment EnvironmentAt(std::size_t index, const Text& tag)
{
    Environment environment;
    Session& session = environment.session;
    session.veu = Take(index, 2) == 1;
    const std::size_t amount = Take(index, kAmounts);
    session.total = kAmountOf[amount];
    // Another one, so that the wrong of the two is noticed.
    session.largest = kAmountOf[(amount + 2) % kAmounts];
    std::size_t oppositions = Take(index, kOppositions);
    for (std::size_t holder = 0; holder < kHolders; ++holder)
    {
        const Text huid = HolderId(holder, tag);
        environment.tables.holders.push_back({huid, L"First" + NameOf(holder, tag),
                                              L"Last" + NameOf(holder, tag),
                                              Take(oppositions, 2) == 1 ? L"1" : L"0"});
        environment.tables.certificates.push_back({huid, NameOf(holder, tag)});
    }
    Call call;
    call.signers = ListAt(index, tag);
    call.fileName = L"/in/A001.xml";
    session.calls.push_back(call);
    return environment;
}

std::size_t RuleCount()
{
    return 2 * 2 * 2 * 3 * 3 * kNames * kNames;
}

Rule RuleAt(std::size_t index, const Text& tag)
{
    Rule rule;
    rule.cuid = L"C" + tag;
    rule.limit = kLimit;
    rule.active = Take(index, 2) == 0;
    rule.allHolders = Take(index, 2) == 1;
    rule.alone = Take(index, 2) == 1;
    rule.profile = static_cast<std::int32_t>(Take(index, 3));
    rule.tlevel = static_cast<std::int32_t>(Take(index, 3));
    rule.huid1 = HolderId(Take(index, kNames), tag);
    rule.huid2 = HolderId(Take(index, kNames), tag);
    return rule;
}

std::vector<Signer> SignersOf(const Environment& environment)
{
    std::vector<Signer> signers;
    Text name;
    for (const wchar_t character : environment.session.calls[0].signers + L";")
    {
        if (character != L';')
        {
            name += character;
        }
        else if (!name.empty())
        {
            signers.push_back({std::exchange(name, Text()), {}, {}});
        }
    }
    return signers;
}

} // namespace model
