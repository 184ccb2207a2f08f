#pragma once

#include "host/batch/order.h"

#include <string>
#include <vector>

namespace batch
{

struct FolderContent
{
    std::vector<Order> orders;          ///< sorted by name
    std::vector<std::string> workFiles; ///< names of work files and locks, whoever they belong to
};

/// What lies in a folder of orders; folders in it are left alone. `folder` is absolute, UTF-8.
/// Raises host::Refusal with kCouldNotRun when it cannot be read.
FolderContent ReadOrderFolder(const std::string& folder);

/// The order of that name; with a fault where the library cannot be given its name.
Order OrderInFolder(const std::string& folder, const std::string& name);

} // namespace batch
