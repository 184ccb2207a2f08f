#include "host/rulebook/holder_import.h"

#include "host/refusal.h"
#include "host/rulebook/rule_file_fields.h"
#include "host/rulebook/text_checks.h"
#include "host/suggestion.h"
#include "host/text.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace rulebook
{

namespace
{

constexpr const char* kCertificate = "certificate";
constexpr const char* kComment = "# rejected, line ";

const std::vector<std::string> kColumns = {kHuid,       kPartner,     kFirstName, kLastName,
                                           kOpposition, kCertificate, kSerial,    kExpires};

// Spreadsheets and people write headings in capitals.
std::string ColumnCalled(const std::string& heading)
{
    const auto found = std::find_if(kColumns.begin(), kColumns.end(),
                                    [lower = InLowerCase(heading)](const std::string& column)
                                    { return InLowerCase(column) == lower; });
    return found == kColumns.end() ? std::string() : *found;
}

/// The columns of a file, in its order.
std::vector<std::string> ColumnsOf(const CsvRecord& heading, const std::string& name)
{
    const std::string place = name + ", line " + std::to_string(heading.line);
    if (!heading.fault.empty())
    {
        throw host::Refusal(host::kFindings,
                            place + ": " + heading.fault + " Nothing was imported.");
    }
    std::string known;
    for (const std::string& column : kColumns)
    {
        known += (known.empty() ? "" : ", ") + column;
    }
    std::set<std::string> seen;
    std::vector<std::string> columns;
    for (const std::string& written : heading.fields)
    {
        const std::string column = ColumnCalled(written);
        if (column.empty())
        {
            throw host::Refusal(host::kFindings, place + ": " + host::Quoted(written) +
                                                     " is no column of holders." +
                                                     host::DidYouMean(written, kColumns, "") +
                                                     " The first line names the columns: " + known +
                                                     ". Nothing was imported.");
        }
        columns.push_back(column);
        if (!seen.insert(column).second)
        {
            throw host::Refusal(host::kFindings, place + ": the column " + host::Quoted(column) +
                                                     " stands there twice. Keep one of the two. "
                                                     "Nothing was imported.");
        }
    }
    if (seen.count(kHuid) == 0)
    {
        throw host::Refusal(host::kFindings, place +
                                                 ": the column huid is missing. The first line "
                                                 "names the columns: " +
                                                 known + ". Nothing was imported.");
    }
    return columns;
}

/// A line as a holder with at most one certificate; empty fields have no value.
struct Line
{
    const CsvRecord* record = nullptr;
    Holder holder;
    std::string reason; ///< why it is rejected
};

// Empty where the file has no such column, or the line no such field.
std::string FieldOf(const CsvRecord& record, const std::vector<std::string>& columns,
                    const char* column)
{
    const auto found = std::find(columns.begin(), columns.end(), column);
    const auto place = static_cast<std::size_t>(found - columns.begin());
    return place < std::min(columns.size(), record.fields.size()) ? record.fields[place]
                                                                  : std::string();
}

std::optional<std::string> ValueOf(std::string field)
{
    return field.empty() ? std::nullopt : std::make_optional(std::move(field));
}

// Everything that a check would not take as it is written.
std::string FaultOf(const Holder& holder)
{
    Problems problems;
    const Places places;
    FileChecker checker(places, problems);
    checker.CheckText(kHuid, holder.huid, kHuidColumn);
    checker.CheckText(kPartner, holder.vpname, kHolderPartnerColumn);
    checker.CheckText(kFirstName, holder.firstName, kFirstNameColumn);
    checker.CheckText(kLastName, holder.lastName, kLastNameColumn);
    checker.CheckOpposition(kOpposition, holder.opposition);
    for (const Certificate& certificate : holder.certificates)
    {
        checker.CheckCertificate(kCertificate, certificate);
    }
    std::string fault;
    for (const Problem& problem : problems.InOrder())
    {
        fault +=
            (fault.empty() ? "" : " ") + problem.field + ": " + problem.what + " " + problem.remedy;
    }
    return fault;
}

Line ReadLine(const CsvRecord& record, const std::vector<std::string>& columns)
{
    Line line;
    line.record = &record;
    line.holder.huid = FieldOf(record, columns, kHuid);
    if (!record.fault.empty())
    {
        line.reason = record.fault;
        return line;
    }
    if (record.fields.size() != columns.size())
    {
        line.reason = "It has " + Counted(record.fields.size(), "field") +
                      " and the first line names " + std::to_string(columns.size()) + ".";
        return line;
    }
    const auto value = [&](const char* column)
    { return ValueOf(FieldOf(record, columns, column)); };
    line.holder.vpname = value(kPartner);
    line.holder.firstName = value(kFirstName);
    line.holder.lastName = value(kLastName);
    line.holder.opposition = value(kOpposition);
    const auto name = value(kCertificate);
    if (name)
    {
        line.holder.certificates = {{*name, value(kSerial), value(kExpires)}};
    }
    else if (value(kSerial) || value(kExpires))
    {
        line.reason = "It has a serial or a date but no certificate.";
        return line;
    }
    line.reason = line.holder.huid.empty() ? "The huid is empty." : FaultOf(line.holder);
    return line;
}

/// Puts lines together to holders, beside those who are there.
class Importer
{
public:
    explicit Importer(const std::vector<Holder>& there)
    {
        for (const Holder& holder : there)
        {
            m_there.emplace(holder.huid, &holder);
            for (const Certificate& certificate : holder.certificates)
            {
                m_owners.emplace(InLowerCase(certificate.commonName), holder.huid);
            }
        }
    }

    void Take(Line line)
    {
        if (line.reason.empty())
        {
            line.reason = ReasonAgainst(line);
        }
        if (!line.reason.empty())
        {
            m_faulty.emplace(line.holder.huid, line.record->line);
        }
        m_lines.push_back(std::move(line));
    }

    void Finish(HolderImport& imported)
    {
        for (const Line& line : m_lines)
        {
            const auto faulty = m_faulty.find(line.holder.huid);
            if (faulty != m_faulty.end())
            {
                imported.rejected.push_back({line.record->line, line.record->text,
                                             !line.reason.empty()
                                                 ? line.reason
                                                 : "Line " + std::to_string(faulty->second) +
                                                       " of the same holder is rejected."});
            }
        }
        for (const std::string& huid : m_order)
        {
            if (m_faulty.count(huid) == 0)
            {
                imported.holders.push_back(m_holders.at(huid));
            }
        }
    }

private:
    std::string ReasonAgainst(const Line& line)
    {
        const std::string& huid = line.holder.huid;
        const auto there = m_there.find(huid);
        const auto [place, isNew] = m_holders.try_emplace(
            huid, there == m_there.end() ? WithoutCertificates(line.holder) : *there->second);
        if (isNew)
        {
            m_order.push_back(huid);
        }
        Holder& holder = place->second;
        if (std::string field = FirstDifference(line.holder, holder); !field.empty())
        {
            return "The holder " + host::Quoted(huid) + " has another " + field +
                   (there == m_there.end() ? " in a line before." : " in the database.") +
                   " An import changes nobody.";
        }
        if (line.holder.certificates.empty())
        {
            return isNew && there == m_there.end() ? ""
                                                   : "It says nothing that is not there already.";
        }
        const Certificate& certificate = line.holder.certificates.front();
        const auto [owner, isFree] = m_owners.emplace(InLowerCase(certificate.commonName), huid);
        if (!isFree)
        {
            return "The certificate " + host::Quoted(certificate.commonName) +
                   " is that of holder " + host::Quoted(owner->second) + " already.";
        }
        holder.certificates.push_back(certificate);
        return {};
    }

    static Holder WithoutCertificates(Holder holder)
    {
        holder.certificates.clear();
        return holder;
    }

    static std::string FirstDifference(const Holder& line, const Holder& holder)
    {
        const auto differs = [&](std::optional<std::string> Holder::*member)
        { return (line.*member).value_or("") != (holder.*member).value_or(""); };
        if (differs(&Holder::vpname))
        {
            return kPartner;
        }
        if (differs(&Holder::firstName))
        {
            return kFirstName;
        }
        if (differs(&Holder::lastName))
        {
            return kLastName;
        }
        return differs(&Holder::opposition) ? kOpposition : "";
    }

    std::map<std::string, const Holder*> m_there;
    std::map<std::u32string, std::string> m_owners; // of certificates, whatever their letter case
    std::map<std::string, Holder> m_holders;
    std::vector<std::string> m_order;
    std::map<std::string, std::size_t> m_faulty; // the first rejected line of a holder
    std::vector<Line> m_lines;
};

// Plain letters of UTF-16 are UTF-8 with a NUL beside each.
void RefuseUtf16(std::string_view csv, const std::string& name)
{
    const std::string_view first = csv.substr(0, csv.find('\n'));
    if (first.starts_with("\xFF\xFE") || first.starts_with("\xFE\xFF") ||
        first.find('\0') != std::string_view::npos)
    {
        throw host::Refusal(host::kFindings,
                            name + ", line 1: the file is UTF-16 text. Save it as UTF-8 (\"CSV "
                                   "UTF-8\" in a spreadsheet). Nothing was imported.");
    }
}

} // namespace

HolderImport ReadHolders(std::string_view csv, const std::string& name,
                         const std::vector<Holder>& there)
{
    RefuseUtf16(csv, name);
    const std::vector<CsvRecord> records = ReadCsv(csv, SeparatorOf(csv, kComment), kComment);
    if (records.empty())
    {
        throw host::Refusal(host::kFindings, name +
                                                 " is empty. Its first line names the columns, "
                                                 "such as huid;first-name;last-name;certificate.");
    }
    HolderImport imported;
    imported.heading = records.front().text;
    const std::vector<std::string> columns = ColumnsOf(records.front(), name);
    Importer importer(there);
    for (auto record = records.begin() + 1; record != records.end(); ++record)
    {
        ++imported.lines;
        importer.Take(ReadLine(*record, columns));
    }
    importer.Finish(imported);
    return imported;
}

std::string RejectsFile(const HolderImport& imported)
{
    std::string text = imported.heading + "\n";
    for (const RejectedLine& line : imported.rejected)
    {
        text += kComment + std::to_string(line.line) + ": " + host::Printable(line.reason) + "\n" +
                line.text + "\n";
    }
    return text;
}

} // namespace rulebook
