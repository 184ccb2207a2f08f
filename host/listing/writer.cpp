#include "host/listing/writer.h"

#include "host/json_stream.h"
#include "host/listing/csv_line.h"
#include "host/listing/table_writer.h"
#include "host/output.h"

#include <optional>

namespace listing
{

namespace
{

// What a file of rows has no place for.
void TellNextPage(const std::string& nextPage)
{
    if (!nextPage.empty())
    {
        host::Complain("there are more. The next page: " + nextPage);
    }
}

/// One object: what the listing is about, the array of rows, and whether there are more.
class JsonWriter final : public Writer
{
public:
    explicit JsonWriter(const Shape& shape) : m_shape(shape) {}

    void Add(const Record& record) override
    {
        Begin();
        m_json->BeginObject();
        const std::vector<Json> values = record.values();
        for (std::size_t index = 0; index < values.size(); ++index)
        {
            m_json->Scalar(m_shape.fields[index], values[index]);
        }
        m_json->End();
    }

    void Finish(const std::string& nextPage) override
    {
        Begin();
        m_json->End();
        m_json->Flag("more", !nextPage.empty());
        m_json->Scalar("next", nextPage.empty() ? Json(nullptr) : Json(nextPage));
        m_json->Finish();
    }

    void Fail(const std::string& message, int status) override
    {
        m_json->End();
        m_json->Text("error", message);
        m_json->Scalar("status", status);
        m_json->Finish();
    }

    bool HasBegun() const override { return m_json.has_value(); }

private:
    void Begin()
    {
        if (m_json)
        {
            return;
        }
        m_json.emplace();
        for (const auto& [name, text] : m_shape.about)
        {
            m_json->Text(name, text);
        }
        m_json->BeginArray(m_shape.listName);
    }

    const Shape& m_shape;
    std::optional<host::JsonStream> m_json;
};

/// An object a line.
class NdJsonWriter final : public Writer
{
public:
    explicit NdJsonWriter(const Shape& shape) : m_shape(shape) {}

    void Add(const Record& record) override
    {
        Json object = Json::object();
        std::vector<Json> values = record.values();
        for (std::size_t index = 0; index < values.size(); ++index)
        {
            object[m_shape.fields[index]] = std::move(values[index]);
        }
        host::PrintJson(object);
        m_hasBegun = true;
    }

    void Finish(const std::string& nextPage) override { TellNextPage(nextPage); }

    void Fail(const std::string& message, int status) override
    {
        host::PrintJson({{"error", message}, {"status", status}});
    }

    bool HasBegun() const override { return m_hasBegun; }

private:
    const Shape& m_shape;
    bool m_hasBegun = false;
};

/// A line of names and a record a row.
class CsvWriter final : public Writer
{
public:
    explicit CsvWriter(const Shape& shape) : m_shape(shape) {}

    void Add(const Record& record) override
    {
        Begin();
        std::vector<std::string> fields;
        for (const Json& value : record.values())
        {
            fields.push_back(CsvField(value));
        }
        host::Print(CsvLine(fields));
    }

    void Finish(const std::string& nextPage) override
    {
        Begin();
        TellNextPage(nextPage);
    }

    // The exit status alone tells it: a record would be taken for a row.
    void Fail(const std::string&, int) override {}

    bool HasBegun() const override { return m_hasBegun; }

private:
    void Begin()
    {
        if (!m_hasBegun)
        {
            host::Print(CsvLine(m_shape.fields));
        }
        m_hasBegun = true;
    }

    const Shape& m_shape;
    bool m_hasBegun = false;
};

} // namespace

std::unique_ptr<Writer> MakeWriter(host::OutputFormat format, const Shape& shape)
{
    switch (format)
    {
    case host::OutputFormat::Json:
        return std::make_unique<JsonWriter>(shape);
    case host::OutputFormat::NdJson:
        return std::make_unique<NdJsonWriter>(shape);
    case host::OutputFormat::Csv:
        return std::make_unique<CsvWriter>(shape);
    case host::OutputFormat::Table:
        break;
    }
    return std::make_unique<TableWriter>(shape);
}

} // namespace listing
