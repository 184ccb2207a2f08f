#pragma once

#include "host/doctor/finding.h"

#include <cstdint>
#include <optional>
#include <string>

namespace doctor
{

/// A folder that is made where it is missing and kept for its maker.
struct ServiceFolder
{
    const char* check;  ///< "store"
    std::string path;   ///< Windows-1252
    std::string origin; ///< what named it, such as "SIGNUTILS_SPOOL"; empty for the usual place
    const char* keeper = "the library"; ///< who makes it
};

/// What is wrong with the folder, or that it is not there yet; nothing for one that can be used.
Findings JudgeFolder(const ServiceFolder& folder);

/// Whether one of them says that its keeper would not use the folder, whose content is not looked
/// at then.
bool IsRefused(const Findings& findings);

/// The folder in quotes, with its rights where the platform has modes: "'/srv/handoff', mode 0700".
std::string FolderInWords(const std::string& path);

/// Bytes that are free where the folder lies, for this user; nothing when the system does not tell.
std::optional<std::uint64_t> FreeBytes(const std::string& path);

/// Little room is told: below 100 MiB.
std::optional<Finding> JudgeRoom(const char* check, std::uint64_t freeBytes);

/// Seconds since the last change of a file; nothing for one that is gone. `path` is UTF-8.
std::optional<std::int64_t> AgeOfFile(const std::string& path);

} // namespace doctor
