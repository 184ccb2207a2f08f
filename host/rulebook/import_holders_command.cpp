#include "host/rulebook/import_holders_command.h"

#include "database/cdatabase.h"
#include "host/exit_status.h"
#include "host/file_text.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/rulebook/book_reading.h"
#include "host/rulebook/book_update.h"
#include "host/rulebook/holder_import.h"
#include "host/rulebook/problem.h"
#include "host/text.h"
#include "port/files.h"

#include <nlohmann/json.hpp>

namespace rulebook
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr std::int64_t kLargestHolderFileMiB = 64;

/// The file of rejected lines. It is there before the database changes, and goes again when the
/// database does not.
class Rejects
{
public:
    Rejects(const host::OptionValue& path, const std::string& text) : m_path(host::NarrowText(path))
    {
        port::File file;
        if (!file.Open(m_path.c_str(), port::OpenMode::CreateNew))
        {
            throw host::UsageRefusal(path.origin + ": the file " + host::Quoted(path.text) +
                                     " cannot be made. Name one that is not there yet, in a folder "
                                     "that is writable. Nothing was imported.");
        }
        if (!file.Write(text.data(), text.size()) || !file.Flush())
        {
            file = port::File();
            Remove();
            throw host::Refusal(host::kCouldNotRun,
                                path.origin + ": the file " + host::Quoted(path.text) +
                                    " cannot be written. Check the disk. Nothing was imported.");
        }
    }
    ~Rejects()
    {
        if (!m_isKept)
        {
            Remove();
        }
    }
    Rejects(const Rejects&) = delete;
    Rejects& operator=(const Rejects&) = delete;

    void Keep() noexcept { m_isKept = true; }

private:
    void Remove() const { DeleteFileA(m_path.c_str()); }

    std::string m_path; // Windows-1252
    bool m_isKept = false;
};

/// What an import did.
struct ImportCounts
{
    std::size_t added = 0;
    std::size_t changed = 0;
};

ImportCounts CountsOf(const BookChange& change)
{
    ImportCounts counts;
    for (const auto& holder : change.holders)
    {
        ++(holder.before == nullptr ? counts.added : counts.changed);
    }
    return counts;
}

void Tell(const host::OptionValues& values, const std::string& name, const HolderImport& imported,
          const ImportCounts& counts)
{
    if (!values.IsOn("json"))
    {
        host::Print(name + ": " + Counted(imported.lines, "line") + "; " +
                    Counted(counts.added, "holder") + " added, " +
                    Counted(counts.changed, "holder") + " with new certificates, " +
                    Counted(imported.rejected.size(), "line") + " rejected.\n");
        return;
    }
    Json rejected = Json::array();
    for (const RejectedLine& line : imported.rejected)
    {
        rejected.push_back({{"line", line.line}, {"reason", line.reason}});
    }
    host::PrintJson({{"file", name},
                     {"lines", imported.lines},
                     {"added", counts.added},
                     {"changed", counts.changed},
                     {"rejected", rejected}});
}

} // namespace

int RunImportHolders(const host::OptionValues& values)
{
    const host::OptionValue* const path = values.Find("file");
    if (path == nullptr)
    {
        throw host::UsageRefusal(
            "argument FILE is missing. Give the path of a CSV file whose first "
            "line names the columns, such as "
            "huid;first-name;last-name;certificate.");
    }
    const std::string name = host::Printable(path->text);
    const std::string csv = host::ReadTextFile(*path, "the CSV file", kLargestHolderFileMiB);
    const host::Connection connection = host::ConnectionFrom(values);
    CDatabase database;
    OpenRuleTables(database, connection);
    const RuleBook before = ReadBook(database, connection);
    const HolderImport imported = ReadHolders(csv, name, before.holders);
    for (const RejectedLine& line : imported.rejected)
    {
        host::Complain(name + ", line " + std::to_string(line.line) + ": " +
                       host::Printable(line.reason));
    }
    const host::OptionValue* const rejects = values.Find("rejects");
    if (!imported.rejected.empty() && rejects == nullptr)
    {
        throw host::Refusal(
            host::kFindings,
            name + " has " + Counted(imported.rejected.size(), "line") +
                " that cannot be imported. Correct the file, or give --rejects FILE "
                "to keep them there and import the others. Nothing was imported.");
    }
    std::optional<Rejects> kept;
    if (!imported.rejected.empty())
    {
        kept.emplace(*rejects, RejectsFile(imported));
    }
    const RuleBook file = {imported.holders, {}};
    const BookChange change = Compare(before, file, false);
    if (!change.IsEmpty())
    {
        UpdateBook(database, connection, before, change);
    }
    if (kept)
    {
        kept->Keep();
    }
    Tell(values, name, imported, CountsOf(change));
    return imported.rejected.empty() ? host::kDone : host::kFindings;
}

} // namespace rulebook
