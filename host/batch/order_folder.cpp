#include "host/batch/order_folder.h"

#include "host/batch/order_name.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"

#include <algorithm>
#include <filesystem>

namespace batch
{

namespace
{

namespace fs = std::filesystem;

[[noreturn]] void RefuseUnreadable(const std::string& folder, const std::error_code& reason)
{
    throw host::Refusal(host::kCouldNotRun,
                        "the folder " + host::Quoted(folder) +
                            " cannot be read: " + host::Printable(reason.message()) +
                            ". Check that it is there and that this user may read it.");
}

std::string Fault(const std::string& name)
{
    if (!host::IsUtf8(name))
    {
        return "the file's name is no UTF-8 text. Rename it.";
    }
    if (host::HasControlCharacter(name))
    {
        return "the file's name holds a control character. Rename it.";
    }
    const std::string without = host::FirstWithoutNarrowPlace(name);
    return without.empty() ? std::string()
                           : "the file's name holds " + host::Quoted(without) +
                                 ", which has no place in Windows-1252. Rename it.";
}

std::string NameOf(const fs::directory_entry& entry)
{
    const std::u8string name = entry.path().filename().u8string();
    return {name.begin(), name.end()};
}

} // namespace

Order OrderInFolder(const std::string& folder, const std::string& name)
{
    Order order;
    order.key = name;
    order.path = folder + port::PathSeparator() + name;
    order.fault = Fault(name);
    return order;
}

FolderContent ReadOrderFolder(const std::string& folder)
{
    FolderContent content;
    std::error_code failed;
    fs::directory_iterator entries(std::u8string(folder.begin(), folder.end()), failed);
    for (; !failed && entries != fs::directory_iterator(); entries.increment(failed))
    {
        std::error_code gone; // an entry may go away meanwhile
        if (!entries->is_regular_file(gone))
        {
            continue;
        }
        const std::string name = NameOf(*entries);
        const NameKind kind = KindOfName(name);
        if (kind == NameKind::Order)
        {
            content.orders.push_back(OrderInFolder(folder, name));
        }
        else if (kind == NameKind::WorkFile)
        {
            content.workFiles.push_back(name);
        }
    }
    if (failed)
    {
        RefuseUnreadable(folder, failed);
    }
    std::sort(content.orders.begin(), content.orders.end(),
              [](const Order& left, const Order& right) { return left.key < right.key; });
    std::sort(content.workFiles.begin(), content.workFiles.end());
    return content;
}

} // namespace batch
