#include "host/batch/result_csv.h"

#include "host/batch/teller.h"
#include "host/listing/csv_line.h"

#include <nlohmann/json.hpp>

#include <string_view>
#include <vector>

namespace batch
{

namespace
{

using Json = nlohmann::ordered_json;

enum class Form
{
    Value,     ///< as in other files of rows, where numbers with a point are amounts
    Number,    ///< digit by digit
    Signers,   ///< separated by ;
    Sentences, ///< separated by a blank
};

struct Column
{
    const char* name;
    Form form = Form::Value;
};

constexpr Column kResultColumns[] = {
    {"file"},
    {"signers", Form::Signers},
    {"verdict"},
    {"outcome"},
    {"format"},
    {"total"},
    {"largestOrder"},
    {"orders"},
    {"currency"},
    {"amounts"},
    {"amountsProblem"},
    {"fileErrors", Form::Sentences},
    {"reasonCode"},
    {"reasonText"},
    {"rulesComplete"},
    {"lookupsComplete"},
    {"problem"},
    {"contract.partner"},
    {"contract.service"},
    {"contract.client"},
    {"contract.protocol"},
    {"contract.protocolName"},
    {"contract.type"},
    {"contract.side"},
    {"contract.distributed"},
    {"orderId"},
    {"rows.due"},
    {"rows.written"},
    {"journal"},
    {"extraInfo"},
    {"reportFile.fileId"},
    {"reportFile.path"},
    {"warnings", Form::Sentences},
    {"held"},
    {"recovered"},
    {"seconds", Form::Number},
    {"status"},
    {"error"},
};

// Null where the object has no such field.
Json ValueOf(const Json& object, std::string_view name)
{
    const std::size_t point = name.find('.');
    const auto field = object.find(name.substr(0, point));
    if (field == object.end() || point == std::string_view::npos)
    {
        return field == object.end() ? Json() : *field;
    }
    return field->is_object() ? ValueOf(*field, name.substr(point + 1)) : Json();
}

Json Joined(const Json& list, const char* between)
{
    std::string text;
    for (const Json& each : list)
    {
        text += (text.empty() ? "" : between) + each.get<std::string>();
    }
    return text;
}

std::string FieldOf(const Json& value, Form form)
{
    if (form == Form::Number && value.is_number())
    {
        return value.dump();
    }
    return listing::CsvField(value.is_array() ? Joined(value, form == Form::Signers ? ";" : " ")
                                              : value);
}

} // namespace

std::string ResultNamesAsCsv()
{
    std::vector<std::string> names;
    for (const Column& column : kResultColumns)
    {
        names.emplace_back(column.name);
    }
    return listing::CsvLine(names);
}

std::string ResultAsCsv(const OrderResult& result)
{
    const Json object = ResultAsJson(result);
    std::vector<std::string> fields;
    for (const Column& column : kResultColumns)
    {
        fields.push_back(FieldOf(ValueOf(object, column.name), column.form));
    }
    return listing::CsvLine(fields);
}

} // namespace batch
