#include "host/doctor/leftovers.h"

#include "host/batch/leftovers.h"
#include "host/batch/order_folder.h"
#include "host/batch/order_name.h"
#include "host/batch/order_path.h"
#include "host/doctor/folder.h"
#include "host/doctor/local_time.h"
#include "host/doctor/lock_holder.h"
#include "host/option_readers.h"
#include "host/order_lock.h"
#include "host/sentence.h"
#include "host/text.h"
#include "port/files.h"

#include <algorithm>
#include <map>

namespace doctor
{

namespace
{

constexpr const char* kOrderFolderCheck = "orders";

/// What lies in the folder of one order.
struct OfOrder
{
    std::vector<std::string> workFiles;
    std::string lock; ///< empty when there is none
};

std::map<std::string, OfOrder> ByOrder(const std::vector<std::string>& names)
{
    std::map<std::string, OfOrder> orders;
    for (const std::string& name : names)
    {
        const auto order = batch::OrderOfWorkFile(name);
        if (order && name == host::OrderLockPath(*order))
        {
            orders[*order].lock = name;
        }
        else if (order)
        {
            orders[*order].workFiles.push_back(name);
        }
    }
    return orders;
}

/// What the dead have left.
struct Left
{
    std::vector<std::string> workFiles;
    std::vector<std::string> locks; ///< with what their holders said of themselves
    std::int64_t oldest = 0;
};

Left LeftIn(const std::string& folder, const std::vector<std::string>& names)
{
    Left left;
    for (const auto& [order, files] : ByOrder(names))
    {
        const LockHolder holder =
            files.lock.empty() ? LockHolder{} : HolderOf(port::JoinPath(folder, files.lock));
        if (!files.lock.empty() && !holder.isGone)
        {
            continue; // being judged, as far as can be seen from here
        }
        if (!files.lock.empty())
        {
            left.locks.push_back(host::Quoted(files.lock) + " (" + host::Printable(holder.note) +
                                 ")");
        }
        for (const std::string& name : files.workFiles)
        {
            left.workFiles.push_back(name);
            left.oldest =
                std::max(left.oldest, AgeOfFile(port::JoinPath(folder, name)).value_or(0));
        }
    }
    return left;
}

std::string Some(const std::vector<std::string>& names)
{
    constexpr std::size_t kTold = 3;
    std::string text;
    for (std::size_t index = 0; index < std::min(names.size(), kTold); ++index)
    {
        text += (index == 0 ? "" : ", ") + names[index];
    }
    return names.size() <= kTold ? text
                                 : text + " and " + std::to_string(names.size() - kTold) + " more";
}

Findings InWords(const std::string& folder, const Left& left, std::size_t removed)
{
    Findings findings;
    if (!left.workFiles.empty())
    {
        findings.push_back(
            {kOrderFolderCheck, Outcome::Warning,
             host::Counted(left.workFiles.size(), "work file lies", "work files lie") + " in " +
                 host::Quoted(folder) +
                 ", kept by signcheck convert --keep or left by a kill, the "
                 "oldest " +
                 AgeInWords(left.oldest) +
                 " old, with orders in plain text: " + Some(left.workFiles),
             "Delete them, or signcheck doctor " + host::Printable(folder) +
                 " --remove-leftovers 1d."});
    }
    if (!left.locks.empty())
    {
        findings.push_back({kOrderFolderCheck, Outcome::Warning,
                            host::Counted(left.locks.size(), "lock", "locks") +
                                " of processes that do not run any more: " + Some(left.locks),
                            "Nothing is held by them: the next check, batch or watch of the order "
                            "takes its lock over. They may be deleted."});
    }
    if (findings.empty())
    {
        findings.push_back(
            {kOrderFolderCheck, Outcome::Ok,
             "nothing of a killed run lies in " + host::Quoted(folder) +
                 (removed == 0 ? ""
                               : "; " + host::Counted(removed, "work file was", "work files were") +
                                     " removed"),
             ""});
    }
    return findings;
}

} // namespace

Findings CheckOrderFolder(const host::OptionValue& folder,
                          std::optional<std::chrono::seconds> removalAge)
{
    host::RefuseUnreadable(folder);
    const std::string path = batch::AbsolutePath(folder.text);
    std::vector<std::string> names = batch::ReadOrderFolder(path).workFiles;
    std::size_t removed = 0;
    if (removalAge)
    {
        removed = batch::TendLeftovers(path, names, removalAge).removed;
        names = batch::ReadOrderFolder(path).workFiles;
    }
    return InWords(path, LeftIn(path, names), removed);
}

} // namespace doctor
