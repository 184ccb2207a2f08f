#include "services/hand_off_store.h"

#include "port/files.h"
#include "port/kernel.h"
#include "port/secrecy.h"
#include "services/file_remover.h"
#include "services/store_unreachable.h"
#include "services/system_error.h"
#include "support/format.h"

#include <vector>

namespace services
{

namespace
{

constexpr std::size_t kBlock = 65536;

// An identifier that is taken although it was given out: the counter is behind, counting goes on
// behind the files. More than one such turn means that somebody else writes into the store.
constexpr int kTurns = 3;

HandOffFailure Failure(HandOffError code, const char* what, const std::string& path)
{
    const std::uint32_t reason = GetLastError();
    const std::string shown = OneLine(path);
    const std::string words = SystemErrorText(reason);
    return {code, reason, support::FormatA("%s \"%s\": %s", what, shown.c_str(), words.c_str())};
}

HandOffFailure NotWritable(const std::string& path)
{
    return Failure(HandOffError::StoreNotWritable, "The report cannot be written as", path);
}

HandOffFailure NotReadable(const std::string& path)
{
    return Failure(HandOffError::FileUnreadable, "The report to hand on cannot be read:", path);
}

std::optional<HandOffFailure> CopyInto(const std::string& source, const std::string& target)
{
    port::File from;
    if (!from.Open(source.c_str(), port::OpenMode::Read))
    {
        return NotReadable(source);
    }
    port::File to;
    if (!to.Open(target.c_str(), port::OpenMode::CreateNew))
    {
        return NotWritable(target);
    }
    std::vector<char> block(kBlock);
    for (;;)
    {
        const std::int64_t read = from.Read(block.data(), block.size());
        if (read < 0)
        {
            return NotReadable(source);
        }
        if (read == 0)
        {
            break;
        }
        if (!to.Write(block.data(), static_cast<std::size_t>(read)))
        {
            return NotWritable(target);
        }
    }
    return to.Flush() ? std::nullopt : std::optional(NotWritable(target));
}

/// Writes beside the final name, then moves: a reader of the folder never sees half a file.
std::optional<HandOffFailure> FileAs(const std::string& source, const std::string& folder,
                                     const std::string& name)
{
    const std::string target = port::JoinPath(folder, name);
    // No final name has two points, so none can be taken for this one.
    const std::string unfinished = target + ".part";
    if (port::FileExists(unfinished.c_str()))
    {
        SetLastError(ERROR_FILE_EXISTS);
        return NotWritable(unfinished);
    }
    FileRemover remover(unfinished.c_str());
    if (std::optional<HandOffFailure> failure = CopyInto(source, unfinished))
    {
        return failure;
    }
    if (!port::MoveFileNoReplace(unfinished.c_str(), target.c_str()))
    {
        return NotWritable(target);
    }
    remover.Keep();
    // What is reported as failed must not be fetched either.
    FileRemover filed(target.c_str());
    if (!port::FlushFolder(folder.c_str()))
    {
        return NotWritable(target);
    }
    filed.Keep();
    return std::nullopt;
}

} // namespace

HandOffStore::HandOffStore(std::string folder)
    : m_folder(std::move(folder)), m_identifiers(m_folder)
{
    if (!port::CreatePrivateFolder(m_folder.c_str()))
    {
        RaiseStoreUnreachable("cannot be used", m_folder);
    }
}

std::optional<HandOffFailure> HandOffStore::MakeFolder(const HandOffItem& item,
                                                       std::string& folder) const
{
    const std::string service = port::JoinPath(m_folder, item.service);
    folder = port::JoinPath(service, item.partner);
    for (const std::string& part : {service, folder})
    {
        if (port::IsLink(part.c_str()))
        {
            return HandOffFailure{
                HandOffError::StoreNotWritable, 0,
                "The report's folder is a link, which may lead out of the store: \"" +
                    OneLine(part) + "\""};
        }
    }
    const bool wasThere = port::FolderExists(folder.c_str());
    if (!port::CreatePrivateFolder(service.c_str()) || !port::CreatePrivateFolder(folder.c_str()) ||
        (!wasThere &&
         (!port::FlushFolder(service.c_str()) || !port::FlushFolder(m_folder.c_str()))))
    {
        return Failure(HandOffError::StoreNotWritable,
                       "The report's folder cannot be made:", folder);
    }
    return std::nullopt;
}

std::optional<HandOffFailure> HandOffStore::File(const HandOffItem& item, std::uint32_t& fileId)
{
    std::string folder;
    std::optional<HandOffFailure> failure = MakeFolder(item, folder);
    for (int turn = 0; turn < kTurns && !failure; ++turn)
    {
        const std::optional<std::uint32_t> given =
            turn == 0 ? m_identifiers.Next() : m_identifiers.NextBehindFiles();
        if (!given)
        {
            return HandOffFailure{HandOffError::IdentifiersUsedUp, 0,
                                  "The file hand-off store has given its last identifier: \"" +
                                      OneLine(m_folder) + "\""};
        }
        const std::string name = support::FormatA("%u.%s", *given, item.extension.c_str());
        failure = FileAs(item.sourcePath, folder, name);
        if (!failure)
        {
            fileId = *given;
            return std::nullopt;
        }
        if (failure->systemCode == ERROR_FILE_EXISTS && turn + 1 < kTurns)
        {
            failure.reset();
        }
    }
    return failure;
}

} // namespace services
