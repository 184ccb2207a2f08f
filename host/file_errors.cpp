#include "host/file_errors.h"

#include "amounts/work_files.h"
#include "host/output.h"
#include "host/table.h"
#include "support/codepage.h"

#include <string>

namespace host
{

namespace
{

constexpr std::size_t kLineWidth = 116;
constexpr const char* kIndent = "  ";

std::string FieldOf(const amounts::DelimitedRow& row, std::size_t column)
{
    return support::Utf8FromNarrow(row.GetAt(column));
}

// Where the error is: a record or, where the file has none, a line of the order file.
std::string PlaceOf(const amounts::DelimitedRow& row)
{
    const std::string record = FieldOf(row, amounts::kErrorRecord);
    return record.empty() ? "Line " + FieldOf(row, amounts::kErrorPosition) : "Record " + record;
}

} // namespace

FileErrors::FileErrors(const std::string& order)
    : m_file(amounts::WorkFilePath(order.c_str(), amounts::kErrorsFile).c_str(),
             amounts::OneLineHeader(amounts::kErrorsFile))
{
}

bool FileErrors::IsEmpty() const
{
    return m_file.CurrentRow().GetAt(amounts::kErrorPosition).empty();
}

void FileErrors::Write(JsonStream& json)
{
    json.BeginArray("errors");
    amounts::ForEachRow(m_file, amounts::kErrorPosition,
                        [&json](const amounts::DelimitedRow& row)
                        {
                            json.BeginObject();
                            json.Text("record", FieldOf(row, amounts::kErrorRecord));
                            json.Number("number", row.GetAt(amounts::kErrorNumber));
                            json.Text("text", FieldOf(row, amounts::kErrorMessage));
                            json.End();
                        });
    json.End();
}

void FileErrors::Print()
{
    amounts::ForEachRow(m_file, amounts::kErrorPosition,
                        [](const amounts::DelimitedRow& row)
                        {
                            const std::string text = PlaceOf(row) + ", error " +
                                                     FieldOf(row, amounts::kErrorNumber) + ": " +
                                                     FieldOf(row, amounts::kErrorMessage);
                            for (const std::string& line : Wrapped(text, kLineWidth))
                            {
                                host::Print(kIndent + line + "\n");
                            }
                        });
}

} // namespace host
