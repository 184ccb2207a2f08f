#include "host/batch/order_list.h"

#include "host/batch/order_name.h"
#include "host/batch/order_path.h"
#include "host/batch/terms.h"
#include "host/check_request.h"
#include "host/file_text.h"
#include "host/order_format.h"
#include "host/refusal.h"
#include "host/rulebook/csv.h"
#include "host/suggestion.h"
#include "host/text.h"
#include "port/file_identity.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>

namespace batch
{

namespace
{

using host::OptionValues;
using host::UsageRefusal;
using nlohmann::json;

constexpr std::int64_t kLargestListMiB = 256;
constexpr std::size_t kMostProblems = 20;
constexpr const char* kFile = "file";
constexpr const char* kRemark = "#";
constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";

class ListReader
{
public:
    ListReader(const host::OptionValue& path, const OptionValues& common)
        : m_common(common), m_name(host::Printable(path.text)),
          m_folder(FolderOf(AbsolutePath(path.text))),
          m_text(host::ReadTextFile(path, "the list of orders", kLargestListMiB))
    {
        if (m_text.starts_with(kByteOrderMark))
        {
            m_text.erase(0, std::char_traits<char>::length(kByteOrderMark));
        }
    }

    std::vector<Order> Read()
    {
        const std::size_t first = m_text.find_first_not_of(" \t\r\n");
        if (first != std::string::npos && m_text[first] == '{')
        {
            ReadJsonLines();
        }
        else
        {
            ReadCsvLines();
        }
        if (!m_problems.empty())
        {
            RefuseAll();
        }
        if (m_orders.empty())
        {
            throw UsageRefusal(m_name + ": the list names no order. Write one order a line, behind "
                                        "a first line that names the columns, such as "
                                        "file,signers.");
        }
        return std::move(m_orders);
    }

private:
    // Runs a step on one line and keeps its refusal, so that every line is told.
    template <typename Step>
    void OnLine(Step&& step)
    {
        try
        {
            step();
        }
        catch (const UsageRefusal& refusal)
        {
            m_problems.emplace_back(refusal.what());
        }
    }

    std::string Place(std::size_t line) const { return m_name + ", line " + std::to_string(line); }

    void ReadJsonLines()
    {
        std::size_t line = 0;
        for (std::size_t begin = 0; begin < m_text.size();)
        {
            const std::size_t end = std::min(m_text.find('\n', begin), m_text.size());
            const std::string text = m_text.substr(begin, end - begin);
            begin = end + 1;
            ++line;
            if (text.find_first_not_of(" \t\r") != std::string::npos)
            {
                OnLine([&] { AddJsonOrder(text, line); });
            }
        }
    }

    void AddJsonOrder(const std::string& text, std::size_t line)
    {
        const json object = JsonObject(text, m_name, line);
        const auto file = object.find(kFile);
        if (file == object.end() || !file->is_string())
        {
            RefuseWithoutFile(line);
        }
        auto terms = std::make_shared<OptionValues>();
        AddJsonTerms(object, Place(line), kFile, *terms);
        Add(file->get<std::string>(), line, std::move(terms));
    }

    void ReadCsvLines()
    {
        const auto records =
            rulebook::ReadCsv(m_text, rulebook::SeparatorOf(m_text, kRemark), kRemark);
        if (records.empty())
        {
            return;
        }
        const std::vector<std::string> columns = Columns(records.front());
        for (std::size_t index = 1; index < records.size(); ++index)
        {
            if (records[index].text.find_first_not_of(" \t\r") == std::string::npos)
            {
                continue;
            }
            OnLine([&] { AddCsvOrder(columns, records[index]); });
        }
    }

    std::vector<std::string> Columns(const rulebook::CsvRecord& record) const
    {
        RefuseFault(record);
        std::vector<std::string> known = TermNames();
        known.emplace_back(kFile);
        for (std::size_t index = 0; index < record.fields.size(); ++index)
        {
            const std::string& column = record.fields[index];
            const std::string place = Place(record.line) + ", column " + host::Printable(column);
            if (std::find(known.begin(), known.end(), column) == known.end())
            {
                throw UsageRefusal(place + ": unknown column." +
                                   host::DidYouMean(column, known, "") +
                                   " The first line names the columns: file, and terms named like "
                                   "the options of signcheck check, without dashes.");
            }
            if (std::count(record.fields.begin(), record.fields.end(), column) > 1)
            {
                throw UsageRefusal(place + ": the column stands there twice. Leave one of them "
                                           "out.");
            }
        }
        if (std::find(record.fields.begin(), record.fields.end(), kFile) == record.fields.end())
        {
            throw UsageRefusal(Place(record.line) +
                               ": the column file is missing. Name the columns "
                               "in the first line, such as file,signers.");
        }
        return record.fields;
    }

    void RefuseFault(const rulebook::CsvRecord& record) const
    {
        if (!record.fault.empty())
        {
            throw UsageRefusal(Place(record.line) + ": " + record.fault + " Correct the line.");
        }
    }

    void AddCsvOrder(const std::vector<std::string>& columns, const rulebook::CsvRecord& record)
    {
        RefuseFault(record);
        if (record.fields.size() != columns.size())
        {
            throw UsageRefusal(Place(record.line) + ": the line has " +
                               std::to_string(record.fields.size()) + " fields, the first line " +
                               std::to_string(columns.size()) +
                               ". Put a field that holds the separator in double quotes.");
        }
        auto terms = std::make_shared<OptionValues>();
        std::string file;
        for (std::size_t index = 0; index < columns.size(); ++index)
        {
            if (columns[index] == kFile)
            {
                file = record.fields[index];
            }
            else if (!record.fields[index].empty()) // an empty cell leaves it to what holds for all
            {
                AddTerm(columns[index], record.fields[index], Place(record.line), *terms);
            }
        }
        Add(file, record.line, std::move(terms));
    }

    void Add(const std::string& file, std::size_t line, std::shared_ptr<OptionValues> terms)
    {
        if (file.empty())
        {
            RefuseWithoutFile(line);
        }
        Order order;
        order.path = AbsolutePath(file, m_folder);
        order.key = order.path;
        RequireOrderFile(order.path, file, line);
        RequireTerms(*terms, line);
        order.terms = std::move(terms);
        RequireOnce(order.path, file, line);
        RequireReportOnce(*order.terms, line);
        m_orders.push_back(std::move(order));
    }

    // What a folder of orders would leave out is no order here either.
    void RequireOrderFile(const std::string& path, const std::string& file, std::size_t line) const
    {
        const std::string place = Place(line) + ", field file: " + host::Quoted(file);
        if (IsFolder(path))
        {
            throw UsageRefusal(place + " is a folder. Name the order files in it, a line each, or "
                                       "give the folder in place of the list.");
        }
        if (KindOfName(NameIn(path)) != NameKind::Order)
        {
            throw UsageRefusal(place +
                               " is never an order: by its name it is a work file, a lock, terms "
                               "of an order, hidden or not yet whole. Leave the line out, or "
                               "rename the file.");
        }
    }

    // One file has many names: by "..", by links, in other letter case.
    void RequireOnce(const std::string& path, const std::string& file, std::size_t line)
    {
        const port::FileIdentity identity = port::IdentifyFile(path);
        const std::string one = identity.number == 0 ? path
                                                     : std::to_string(identity.volume) + "/" +
                                                           std::to_string(identity.number);
        const auto [before, isNew] = m_lines.emplace(one, line);
        if (!isNew)
        {
            throw UsageRefusal(Place(line) + ", field file: " + host::Quoted(file) +
                               " is the order of line " + std::to_string(before->second) +
                               " again. Leave one of the lines out.");
        }
    }

    // Two reports of one identifier would be taken for one.
    void RequireReportOnce(const OptionValues& terms, std::size_t line)
    {
        const host::OptionValue* const report = terms.Find("message-id");
        if (report == nullptr || report->text.empty())
        {
            return;
        }
        const auto [before, isNew] = m_reports.emplace(report->text, line);
        if (!isNew)
        {
            throw UsageRefusal(Place(line) + ", field message-id: " + host::Quoted(report->text) +
                               " is the report of line " + std::to_string(before->second) +
                               " already. Give every report an identifier of its own.");
        }
    }

    // What is missing in a line is told with the line, too.
    void RequireTerms(const OptionValues& terms, std::size_t line) const
    {
        try
        {
            const OptionValues all = WithCommon(terms, m_common);
            if (host::ReadCheckTerms(all).amountsFromFile)
            {
                host::RefuseUnknownFormat(all);
            }
            RequireOwnReport(terms, m_common);
        }
        catch (const UsageRefusal& refusal)
        {
            const std::string text = refusal.what();
            throw UsageRefusal(text.starts_with(m_name) ? text : Place(line) + ": " + text);
        }
    }

    [[noreturn]] void RefuseWithoutFile(std::size_t line) const
    {
        throw UsageRefusal(Place(line) + ", field file: the path of the order file is missing. "
                                         "Write it as a text.");
    }

    [[noreturn]] void RefuseAll() const
    {
        std::string text;
        const std::size_t told = std::min(m_problems.size(), kMostProblems);
        for (std::size_t index = 0; index < told; ++index)
        {
            text += (index == 0 ? "" : "\n") + m_problems[index];
        }
        if (told < m_problems.size())
        {
            text += "\n" + std::to_string(m_problems.size() - told) + " more problems in " +
                    m_name + ".";
        }
        throw UsageRefusal(text + " Nothing was judged.");
    }

    const OptionValues& m_common;
    std::string m_name;
    std::string m_folder;
    std::string m_text;
    std::vector<Order> m_orders;
    std::map<std::string, std::size_t> m_lines;   ///< by the file, whatever name it was given
    std::map<std::string, std::size_t> m_reports; ///< lines by the identifiers of their reports
    std::vector<std::string> m_problems;
};

} // namespace

std::vector<Order> ReadOrderList(const host::OptionValue& path, const OptionValues& common)
{
    return ListReader(path, common).Read();
}

} // namespace batch
