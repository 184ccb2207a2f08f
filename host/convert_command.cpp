#include "host/convert_command.h"

#include "amounts/text_line_reader.h"
#include "host/conversion.h"
#include "host/exit_status.h"
#include "host/file_errors.h"
#include "host/json_stream.h"
#include "host/output.h"
#include "host/table.h"
#include "host/text.h"
#include "support/codepage.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace host
{

namespace
{

struct WorkFile
{
    std::string path; ///< UTF-8
    std::string holds;
    std::uint64_t rows = 0;
};

struct KindInWords
{
    amounts::WorkFileKind kind;
    const char* holds;
};

constexpr KindInWords kKinds[] = {
    {amounts::kTotalsFile, "totals of the remittances"},
    {amounts::kOrdersFile, "orders"},
    {amounts::kDetailsFile, "details of the remittances"},
    {amounts::kCountsFile, "order counts of remittances and file"},
    {amounts::kErrorsFile, "errors in the order file"},
    {amounts::kMainFile, "summary in words"},
};

std::uint64_t CountRows(const std::string& path, std::size_t headerLines)
{
    amounts::TextLineReader reader;
    std::string_view line;
    std::uint64_t lines = 0;
    if (reader.Open(path.c_str()))
    {
        bool more = true;
        while (more)
        {
            more = reader.ReadLine(line);
            lines += line.empty() ? 0 : 1;
        }
    }
    return lines > headerLines ? lines - headerLines : 0;
}

std::vector<WorkFile> ListWorkFiles(const std::string& order)
{
    std::vector<WorkFile> files;
    for (const KindInWords& each : kKinds)
    {
        const std::string path = amounts::WorkFilePath(order.c_str(), each.kind);
        files.push_back(
            {support::Utf8FromNarrow(path), each.holds, CountRows(path, each.kind.headerLines)});
    }
    return files;
}

void Write(const OrderSource& order, bool keeps, const std::vector<WorkFile>& files,
           FileErrors& errors)
{
    JsonStream json;
    json.Text("file", order.shown);
    json.Text("format", order.format.Name());
    json.Flag("kept", keeps);
    json.BeginArray("workFiles");
    for (const WorkFile& file : files)
    {
        json.BeginObject();
        json.Text("path", file.path);
        json.Text("holds", file.holds);
        json.Number("rows", std::to_string(file.rows));
        json.End();
    }
    json.End();
    errors.Write(json);
    json.Finish();
}

void PrintWords(const OrderSource& order, bool keeps, const std::vector<WorkFile>& files,
                FileErrors& errors)
{
    Print("Order     " + Printable(order.shown) + "\n" + //
          "Format    " + order.format.Name() + "\n" +    //
          (keeps ? "Written   these work files, which stay:\n\n"
                 : "Written   nothing stays; --keep would leave these work files:\n\n"));
    Table table;
    table.AddColumn("ROWS", Table::Align::Right);
    table.AddColumn("HOLDS");
    table.AddColumn("PATH");
    for (const WorkFile& file : files)
    {
        table.AddRow({std::to_string(file.rows), file.holds, file.path});
    }
    Print(table.Text());
    if (!errors.IsEmpty())
    {
        Print("\nErrors\n");
        errors.Print();
    }
}

} // namespace

int RunConvert(const OptionValues& values)
{
    const OrderSource order = ReadOrderSource(values, "convert");
    const bool keeps = values.IsOn("keep");
    Conversion conversion(order);
    const std::vector<WorkFile> files = ListWorkFiles(order.path);
    FileErrors errors(order.path);
    keeps ? conversion.Keep() : conversion.Remove();
    const int status = errors.IsEmpty() ? kDone : kFindings;
    values.IsOn("json") ? Write(order, keeps, files, errors)
                        : PrintWords(order, keeps, files, errors);
    return status;
}

} // namespace host
