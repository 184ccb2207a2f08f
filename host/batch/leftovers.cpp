#include "host/batch/leftovers.h"

#include "host/batch/order_name.h"
#include "host/order_lock.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"
#include "support/codepage.h"

#include <algorithm>
#include <filesystem>
#include <map>

namespace batch
{

namespace
{

namespace fs = std::filesystem;
using std::chrono::seconds;

constexpr const char* kOption = "remove-leftovers";
constexpr std::size_t kNamesTold = 5;
constexpr std::size_t kMostDigits = 6;

struct Unit
{
    char letter;
    int inSeconds;
};

constexpr Unit kUnits[] = {{'s', 1}, {'m', 60}, {'h', 3600}, {'d', 86400}};

// Of Windows-1252; nothing when the name has no place there, so that no order was judged under it.
std::optional<std::string> NarrowPath(const std::string& folder, const std::string& name)
{
    std::string narrow;
    const std::string path = folder + port::PathSeparator() + name;
    if (!host::IsUtf8(path) || !support::TryNarrowFromWide(support::WideFromUtf8(path), narrow))
    {
        return std::nullopt;
    }
    return narrow;
}

bool IsOlderThan(const std::string& path, seconds age)
{
    std::error_code failed;
    const auto changed = fs::last_write_time(std::u8string(path.begin(), path.end()), failed);
    return !failed && fs::file_time_type::clock::now() - changed > age;
}

} // namespace

std::optional<seconds> RemovalAge(const host::OptionValues& values)
{
    const host::OptionValue* const value = values.Find(kOption);
    if (value == nullptr)
    {
        return std::nullopt;
    }
    const std::string& text = value->text;
    const std::string digits = text.substr(0, text.empty() ? 0 : text.size() - 1);
    const auto* const unit = std::find_if(std::begin(kUnits), std::end(kUnits),
                                          [&text](const Unit& each)
                                          { return !text.empty() && text.back() == each.letter; });
    if (unit == std::end(kUnits) || digits.empty() || digits.size() > kMostDigits ||
        digits.find_first_not_of("0123456789") != std::string::npos)
    {
        throw host::UsageRefusal(value->origin + ": " + host::Quoted(text) +
                                 " is no age. Give a number and its unit: 90s, 30m, 12h or 2d.");
    }
    return seconds(static_cast<long long>(std::stoi(digits)) * unit->inSeconds);
}

Leftovers TendLeftovers(const std::string& folder, const std::vector<std::string>& names,
                        std::optional<seconds> age)
{
    std::map<std::string, std::vector<std::string>> byOrder;
    for (const std::string& name : names)
    {
        if (const auto order = OrderOfWorkFile(name); order)
        {
            byOrder[*order].push_back(name);
        }
    }
    Leftovers leftovers;
    for (const auto& [order, workFiles] : byOrder)
    {
        const auto path = NarrowPath(folder, order);
        if (!path)
        {
            leftovers.names.insert(leftovers.names.end(), workFiles.begin(), workFiles.end());
            continue;
        }
        const host::OrderLock lock(*path, "signcheck, which tidies up");
        if (lock.IsHeldByOther())
        {
            continue;
        }
        for (const std::string& name : workFiles)
        {
            const auto file = NarrowPath(folder, name);
            if (*file == host::OrderLockPath(*path))
            {
                continue; // the one that was just taken
            }
            const bool mayGo =
                lock.IsTaken() && age && IsOlderThan(folder + port::PathSeparator() + name, *age);
            if (mayGo && DeleteFileA(file->c_str()) != 0)
            {
                ++leftovers.removed;
            }
            else
            {
                leftovers.names.push_back(name);
            }
        }
    }
    return leftovers;
}

std::string LeftoverWarning(const std::string& folder, const Leftovers& leftovers)
{
    if (leftovers.names.empty())
    {
        return {};
    }
    std::string listed;
    const std::size_t told = std::min(leftovers.names.size(), kNamesTold);
    for (std::size_t index = 0; index < told; ++index)
    {
        listed += (index == 0 ? "" : ", ") + host::Quoted(leftovers.names[index]);
    }
    if (told < leftovers.names.size())
    {
        listed += " and " + std::to_string(leftovers.names.size() - told) + " more";
    }
    return "work files of orders lie in " + host::Quoted(folder) + ": " + listed +
           ", kept by signcheck convert --keep or left by a run that was killed. They hold orders "
           "in plain text; --remove-leftovers 1d removes those older than a day.";
}

} // namespace batch
