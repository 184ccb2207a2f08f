#include "host/batch/order_name.h"

#include <algorithm>

namespace batch
{

namespace
{

constexpr std::string_view kMark = ".veu";
constexpr std::string_view kPart = ".part";
// What may follow the mark: the six work files and the lock.
constexpr std::string_view kEndings[] = {"", ".bp", ".cp", ".cp2", ".tot", ".err", ".lock"};
// Of the number in the name of a work file that is being written.
constexpr std::size_t kPartDigits = 16;
// Names that programs give a file until it is whole.
constexpr std::string_view kUnfinished[] = {".part", ".tmp", ".filepart"};

std::string LowerCase(std::string_view name)
{
    std::string lower(name);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char letter) {
                       return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32)
                                                             : letter;
                   });
    return lower;
}

// ".veu.bp.0123456789abcdef.part" is ".veu.bp".
std::string_view WithoutPart(std::string_view name)
{
    constexpr std::size_t kLength = 1 + kPartDigits + kPart.size();
    if (name.size() < kLength || !name.ends_with(kPart))
    {
        return name;
    }
    const std::string_view number = name.substr(name.size() - kLength + 1, kPartDigits);
    const bool isNumber = number.find_first_not_of("0123456789abcdef") == std::string_view::npos;
    return isNumber && name[name.size() - kLength] == '.' ? name.substr(0, name.size() - kLength)
                                                          : name;
}

} // namespace

std::optional<std::string> OrderOfWorkFile(std::string_view name)
{
    // Letter case does not tell files apart on every system.
    const std::string lower = LowerCase(name);
    const std::string_view whole = WithoutPart(lower);
    const std::size_t mark = whole.rfind(kMark);
    if (mark == std::string_view::npos || mark == 0)
    {
        return std::nullopt;
    }
    const std::string_view ending = whole.substr(mark + kMark.size());
    if (std::find(std::begin(kEndings), std::end(kEndings), ending) == std::end(kEndings))
    {
        return std::nullopt;
    }
    return std::string(name.substr(0, mark));
}

NameKind KindOfName(std::string_view name)
{
    if (OrderOfWorkFile(name))
    {
        return NameKind::WorkFile;
    }
    const std::string lower = LowerCase(name);
    const bool isUnfinished =
        std::any_of(std::begin(kUnfinished), std::end(kUnfinished),
                    [&lower](std::string_view ending) { return lower.ends_with(ending); });
    return lower.starts_with('.') || isUnfinished || lower.ends_with(kTermsEnding)
               ? NameKind::Other
               : NameKind::Order;
}

} // namespace batch
