#include "host/scratch/leftovers.h"

#include "database/cdatabase.h"
#include "host/query.h"
#include "host/refusal.h"
#include "host/scratch/own_trace.h"
#include "host/scratch/place.h"
#include "host/scratch/room.h"
#include "host/text.h"
#include "port/files.h"
#include "support/codepage.h"

#include <algorithm>
#include <string_view>

namespace scratch
{

namespace
{

std::vector<Leftover> ByName(std::vector<Leftover> found)
{
    std::sort(found.begin(), found.end(),
              [](const Leftover& left, const Leftover& right) { return left.name < right.name; });
    return found;
}

// False when the folder cannot be read.
bool AddFiles(const std::string& folder, const char* kind, std::string_view ending,
              std::vector<Leftover>& found)
{
    std::vector<std::string> names;
    if (!port::ListFolder(folder.c_str(), names))
    {
        return false;
    }
    for (const std::string& name : names)
    {
        const auto parts = name.ends_with(ending)
                               ? ReadName(name.substr(0, name.size() - ending.size()))
                               : std::nullopt;
        if (parts)
        {
            found.push_back({kind, support::Utf8FromNarrow(port::JoinPath(folder, name)), *parts,
                             "delete the file"});
        }
    }
    return true;
}

} // namespace

std::vector<Leftover> LeftoversIn(CDatabase& source, const host::Connection& connection)
{
    std::vector<Leftover> found;
    const Room* const room = RoomOf(source.GetDialect().product);
    if (room == nullptr)
    {
        return found;
    }
    host::ForEachRow(source, connection, room->list, {"NAME"},
                     [&found, room](const host::QueryRow& row)
                     {
                         const std::string& name = row.at("NAME");
                         if (const auto parts = ReadName(name))
                         {
                             found.push_back({room->kind, name, *parts,
                                              support::Utf8FromWide(DropOf(*room, name))});
                         }
                         return true;
                     });
    return ByName(std::move(found));
}

std::vector<Leftover> LeftoverFiles()
{
    const std::string folder = port::TemporaryFolder();
    std::vector<Leftover> found;
    if (!AddFiles(folder, kKindOfFile, kFileEnding, found))
    {
        throw host::Refusal(host::kCouldNotRun,
                            "the folder for temporary files " +
                                host::Quoted(support::Utf8FromNarrow(folder)) +
                                " cannot be read. Give another one (TMPDIR, on Windows TEMP).");
    }
    for (const std::string& each : TraceFolders())
    {
        AddFiles(each, kKindOfTrace, kTraceEnding, found);
    }
    return ByName(std::move(found));
}

} // namespace scratch
