#include "host/prune/prune_command.h"

#include "database/cdatabase.h"
#include "host/batch/database_identity.h"
#include "host/batch/order_path.h"
#include "host/connection.h"
#include "host/exit_status.h"
#include "host/hand_off_option.h"
#include "host/moment.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/paragraph.h"
#include "host/prune/archived_table.h"
#include "host/prune/manifest.h"
#include "host/prune/old_reports.h"
#include "host/prune/spool_lines.h"
#include "host/prune/table_removal.h"
#include "host/question.h"
#include "host/real_place.h"
#include "host/refusal.h"
#include "host/rulebook/iso_date.h"
#include "host/schema_version.h"
#include "host/sentence.h"
#include "host/text.h"
#include "port/files.h"
#include "support/codepage.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace prune
{

namespace
{

using Json = nlohmann::ordered_json;

// Today's rows are still being written, so no day behind today can be meant.
std::string DayFrom(const host::OptionValues& values)
{
    const host::OptionValue& value = host::Required(values, "before", "--before 2026-01-01");
    if (!rulebook::IsIsoDate(value.text))
    {
        throw host::UsageRefusal(value.origin + ": " + host::Quoted(value.text) +
                                 " is no day. Write one such as 2026-01-01.");
    }
    if (value.text > host::LocalNow().substr(0, rulebook::kIsoDateLength))
    {
        throw host::UsageRefusal(value.origin + ": " + host::Quoted(value.text) +
                                 " has not come yet. Give today or an earlier day: what is from "
                                 "before it is removed.");
    }
    return value.text;
}

/// How much there is of each kind.
struct Counts
{
    std::uint64_t history = 0;
    std::uint64_t events = 0;
    std::uint64_t reports = 0;
    std::uint64_t spool = 0;
};

Counts CountsOf(const Manifest& manifest)
{
    const auto rowsOf = [&manifest](const std::string& name)
    {
        const auto found = std::find_if(manifest.files.begin(), manifest.files.end(),
                                        [&name](const auto& file) { return file.name == name; });
        return found == manifest.files.end() ? 0 : found->rows;
    };
    return {rowsOf(HistoryTable().file), rowsOf(EventTable().file), rowsOf(kReportsFile),
            rowsOf(kSpoolFile)};
}

std::string InWords(const Counts& counts)
{
    return host::Counted(counts.history, "history row", "history rows") + ", " +
           host::Counted(counts.events, "audit event", "audit events") + ", " +
           host::Counted(counts.reports, "status report", "status reports") + ", " +
           host::Counted(counts.spool, "spool line", "spool lines");
}

Json AsJson(const Counts& counts)
{
    return {{"history", counts.history},
            {"events", counts.events},
            {"reports", counts.reports},
            {"spool", counts.spool}};
}

// What is archived is gone on with from any folder, and only where it lay.
std::string StoreFrom(const host::OptionValues& values)
{
    const std::string store = support::Utf8FromNarrow(host::HandOffStoreFrom(values));
    return host::NarrowText({batch::AbsolutePath(store), "the hand-off store"});
}

/// One prune, from the settings to the last removed file.
class Prune
{
public:
    explicit Prune(const host::OptionValues& values)
        : m_values(values), m_day(DayFrom(values)), m_connection(host::ConnectionFrom(values)),
          m_store(StoreFrom(values))
    {
    }

    int Run()
    {
        const bool isDryRun = m_values.IsOn("dry-run");
        std::string path;
        if (!isDryRun)
        {
            host::RequireAnswer(m_values, "Look at what would be removed with --dry-run");
            path = PathOfArchive();
        }
        host::OpenDatabase(m_database, m_connection, false);
        // A newer schema is refused; an older one has the same two tables.
        static_cast<void>(host::CheckSchemaVersion(m_database, m_connection));
        host::RequireTable(m_database, m_connection, "HST_SIGNRULES", "STATUT");
        host::RequireTable(m_database, m_connection, "EVT_JOURNAL", "EVENTKEY");
        return isDryRun ? TellOnly() : ArchiveAndRemove(path);
    }

private:
    // What is mistyped must not become a row of new folders, and the services that fetch reports
    // take whatever lies in the store.
    std::string PathOfArchive() const
    {
        const host::OptionValue& given = host::Required(m_values, "export", "--export FOLDER");
        const std::string path = host::NarrowText(given);
        const std::string above = host::FolderAbove(path);
        if (!port::FolderExists(path.c_str()) && !port::FolderExists(above.c_str()))
        {
            throw host::UsageRefusal(given.origin + ": there is no folder " +
                                     host::Quoted(support::Utf8FromNarrow(above)) +
                                     " to make the archive in. Make it, or check the spelling.");
        }
        if (host::LiesWithin(given.text, support::Utf8FromNarrow(m_store)))
        {
            throw host::UsageRefusal(
                given.origin + ": " + host::Quoted(given.text) + " lies in the hand-off store " +
                host::Quoted(support::Utf8FromNarrow(m_store)) + ". Name a folder outside of it.");
        }
        return path;
    }

    int TellOnly()
    {
        const Counts counts = {CountBefore(HistoryTable(), m_database, m_connection, m_day),
                               CountBefore(EventTable(), m_database, m_connection, m_day),
                               OldReports(m_store, m_day).Count(),
                               SpoolLines(m_database, m_connection, m_day).Count()};
        if (m_values.IsOn("json"))
        {
            host::PrintJson({{"before", m_day}, {"dryRun", true}, {"counts", AsJson(counts)}});
            return host::kDone;
        }
        std::string text;
        host::AppendParagraph(text, "Before", m_day);
        host::AppendParagraph(text, "Would go", InWords(counts));
        host::Print(text);
        return host::kDone;
    }

    int ArchiveAndRemove(const std::string& path)
    {
        const ArchiveFolder folder(path);
        const Keys kept = KeysInOtherSpools(m_connection);
        const std::optional<Manifest> earlier = folder.ReadManifest();
        if (earlier)
        {
            RequireSame(*earlier);
        }
        const Manifest manifest = earlier ? *earlier : Archive(folder, kept);
        VerifyArchive(path, manifest);
        const Counts archived = CountsOf(manifest);
        if (!m_values.IsOn("json"))
        {
            Show(manifest, archived, path, earlier.has_value());
        }
        if (!host::IsAgreed(m_values, "Remove what is archived?"))
        {
            host::Print("Nothing was removed. The archive stays; the same command goes on from "
                        "it.\n");
            return host::kFindings;
        }
        const Counts removed = Remove(path, kept);
        Json object = {{"before", m_day},
                       {"dryRun", false},
                       {"archive", support::Utf8FromNarrow(path)},
                       {"archived", AsJson(archived)},
                       {"keptEvents", manifest.kept},
                       {"resumed", earlier.has_value()},
                       {"removed", AsJson(removed)}};
        folder.MarkRemoved(object.dump(2) + "\n");
        if (m_values.IsOn("json"))
        {
            host::PrintJson(object);
            return host::kDone;
        }
        std::string text;
        host::AppendParagraph(text, "Removed", InWords(removed));
        host::Print(text);
        return host::kDone;
    }

    void RequireSame(const Manifest& manifest) const
    {
        const bool isSame = manifest.before == m_day &&
                            manifest.database == batch::DatabaseIdentity(m_connection) &&
                            manifest.store == support::Utf8FromNarrow(m_store);
        if (!isSame)
        {
            throw host::Refusal(host::kCouldNotRun,
                                "option --export: the folder holds an archive of an interrupted "
                                "prune before " +
                                    manifest.before + " of the database " +
                                    host::Quoted(manifest.database) + " and the store " +
                                    host::Quoted(manifest.store) +
                                    ". Give the same to go on with it, or name a new folder.");
        }
    }

    Manifest Archive(const ArchiveFolder& folder, const Keys& kept)
    {
        const std::string& path = folder.Path();
        Manifest manifest;
        manifest.before = m_day;
        manifest.made = host::LocalNow();
        manifest.database = batch::DatabaseIdentity(m_connection);
        manifest.store = support::Utf8FromNarrow(m_store);
        // The spool first: what is found delivered there has its event in the journal's part.
        manifest.files.push_back(SpoolLines(m_database, m_connection, m_day).Export(path));
        manifest.files.push_back(
            Export(HistoryTable(), m_database, m_connection, m_day, kept, path, manifest.kept));
        manifest.files.push_back(
            Export(EventTable(), m_database, m_connection, m_day, kept, path, manifest.kept));
        manifest.files.push_back(OldReports(m_store, m_day).Export(path));
        VerifyArchive(path, manifest);
        folder.Write(manifest);
        return manifest;
    }

    void Show(const Manifest& manifest, const Counts& counts, const std::string& path,
              bool isEarlier) const
    {
        std::string text;
        host::AppendParagraph(text, "Before", m_day);
        host::AppendParagraph(text, "Archived",
                              InWords(counts) +
                                  (isEarlier ? ", by a command that was interrupted" : ""));
        host::AppendParagraph(text, "In", support::Utf8FromNarrow(path));
        if (manifest.kept > 0)
        {
            host::AppendParagraph(text, "Kept",
                                  host::Counted(manifest.kept, "event", "events") +
                                      " that another spool on this machine still has");
        }
        host::Print(text);
        host::FlushOutput();
    }

    // The spool first: its lines are known as delivered by their events, which go with the rows.
    Counts Remove(const std::string& path, const Keys& kept)
    {
        Counts removed;
        removed.spool = SpoolLines(m_database, m_connection, m_day).Remove(path);
        const RemovedRows rows = RemoveRows(m_database, m_connection, path, kept);
        removed.history = rows.history;
        removed.events = rows.events;
        removed.reports = OldReports::Remove(path);
        return removed;
    }

    const host::OptionValues& m_values;
    std::string m_day;
    host::Connection m_connection;
    std::string m_store;
    CDatabase m_database;
};

} // namespace

int RunPrune(const host::OptionValues& values)
{
    return Prune(values).Run();
}

} // namespace prune
