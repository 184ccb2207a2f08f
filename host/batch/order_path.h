#pragma once

#include "host/option_values.h"

#include <optional>
#include <string>

namespace batch
{

// Paths are UTF-8. They are made absolute without following links, so that history rows of one
// order have one name from wherever the command was started.

std::string AbsolutePath(const std::string& path);
/// The same for a path that is relative to `folder`.
std::string AbsolutePath(const std::string& path, const std::string& folder);
/// The folder that holds the file, without a final separator.
std::string FolderOf(const std::string& path);
/// What stands behind its last separator.
std::string NameIn(const std::string& path);
bool IsFolder(const std::string& path);
/// Whether anything has that name, a link that leads nowhere too.
bool IsThere(const std::string& path);

/// Raises host::UsageRefusal for a file that a run would write into the folder that it judges,
/// where whatever comes is an order. For a list of orders `folder` is empty or the list itself.
void RefuseAmongOrders(const host::OptionValue& file, const std::string& folder);

/// What tells a file from what its name stood for before: size and time of the last change. Empty
/// when there is no such file.
std::optional<std::string> VersionOf(const std::string& path);

} // namespace batch
