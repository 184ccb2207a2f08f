#include "host/doctor/folder.h"

#include "host/text.h"
#include "port/files.h"
#include "port/secrecy.h"
#include "support/codepage.h"

#include <algorithm>
#include <chrono>
#include <filesystem>

namespace doctor
{

namespace
{

namespace fs = std::filesystem;

constexpr std::uint64_t kMebibyte = std::uint64_t{1024} * 1024;
constexpr std::uint64_t kLittleRoom = 100 * kMebibyte;

fs::path PathOf(const std::string& utf8)
{
    return {std::u8string(utf8.begin(), utf8.end())};
}

std::string Shown(const std::string& path)
{
    return host::Printable(support::Utf8FromNarrow(path));
}

// The first one above that is there is where the missing ones will be made.
bool CanBeMade(const std::string& path)
{
    std::error_code failed;
    fs::path above = fs::absolute(PathOf(support::Utf8FromNarrow(path)), failed);
    while (!failed && above.has_relative_path() && !fs::exists(above, failed))
    {
        above = above.parent_path();
    }
    const std::u8string text = above.u8string();
    return port::IsWritableFolder(
        support::NarrowFromWide(support::WideFromUtf8(std::string(text.begin(), text.end())))
            .c_str());
}

Finding NotThere(const ServiceFolder& folder)
{
    const std::string words = "the folder " + host::Quoted(Shown(folder.path)) + " is not there";
    if (!CanBeMade(folder.path))
    {
        return {folder.check, Outcome::Failed, words + " and cannot be made by this user",
                "Make it for this user alone: mkdir -m 700 " + Shown(folder.path) + "."};
    }
    if (folder.origin.empty())
    {
        return {folder.check, Outcome::Ok, words + " yet; it is made when it is first needed", ""};
    }
    return {folder.check, Outcome::Warning, words + "; it would be made when it is first needed",
            "See that " + folder.origin +
                " names the folder that is meant and that its volume is mounted, or make it: mkdir "
                "-m 700 " +
                Shown(folder.path) + "."};
}

} // namespace

Findings JudgeFolder(const ServiceFolder& folder)
{
    const std::string words = "the folder " + host::Quoted(Shown(folder.path));
    if (!port::FolderExists(folder.path.c_str()))
    {
        if (port::FileExists(folder.path.c_str()))
        {
            return {{folder.check, Outcome::Failed,
                     host::Quoted(Shown(folder.path)) + " is a file and no folder",
                     "Name a folder."}};
        }
        return {NotThere(folder)};
    }
    const port::FileRights rights = port::RightsOf(folder.path.c_str());
    if (port::BelongsToOther(folder.path.c_str()))
    {
        return {{folder.check, Outcome::Failed,
                 words + " belongs to another user, so that " + folder.keeper + " refuses it",
                 "Give it to the user of the host: chown USER " + Shown(folder.path) + "."}};
    }
    if (rights.everybodyMayWrite && rights.isSticky)
    {
        return {{folder.check, Outcome::Failed,
                 words + " is shared by everybody (mode " + rights.mode + "), so that " +
                     folder.keeper + " refuses it",
                 "Name a folder of the host's own."}};
    }
    if (!port::IsWritableFolder(folder.path.c_str()))
    {
        return {{folder.check, Outcome::Failed, words + " cannot be written by this user",
                 "Give its owner the right: chmod u+rwx " + Shown(folder.path) + "."}};
    }
    if (rights.everybodyMayWrite)
    {
        return {{folder.check, Outcome::Warning,
                 words + " may be written by every user (mode " + rights.mode + "); " +
                     folder.keeper + " takes that back when it next writes there",
                 "Take it back: chmod o-w " + Shown(folder.path) +
                     ", and see who else has put files there."}};
    }
    return {};
}

bool IsRefused(const Findings& findings)
{
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& each) { return each.outcome == Outcome::Failed; });
}

std::string FolderInWords(const std::string& path)
{
    const std::string mode = port::RightsOf(path.c_str()).mode;
    return host::Quoted(Shown(path)) + (mode.empty() ? "" : ", mode " + mode);
}

std::optional<std::uint64_t> FreeBytes(const std::string& path)
{
    std::error_code failed;
    const fs::space_info room = fs::space(PathOf(support::Utf8FromNarrow(path)), failed);
    return failed ? std::nullopt : std::optional<std::uint64_t>(room.available);
}

std::optional<Finding> JudgeRoom(const char* check, std::uint64_t freeBytes)
{
    if (freeBytes >= kLittleRoom)
    {
        return std::nullopt;
    }
    return Finding{check, Outcome::Warning,
                   "only " + std::to_string(freeBytes / kMebibyte) + " MiB are free there",
                   "Make room on its file system: signcheck prune archives and removes what is "
                   "old."};
}

std::optional<std::int64_t> AgeOfFile(const std::string& path)
{
    std::error_code failed;
    const auto changed = fs::last_write_time(PathOf(path), failed);
    if (failed)
    {
        return std::nullopt;
    }
    return std::chrono::duration_cast<std::chrono::seconds>(fs::file_time_type::clock::now() -
                                                            changed)
        .count();
}

} // namespace doctor
