#include "host/json_stream.h"

#include "host/decimal_sum.h"
#include "host/json_layout.h"
#include "host/output.h"

#include <nlohmann/json.hpp>

namespace host
{

namespace
{

constexpr std::size_t kIndentWidth = 2;

std::string Quote(std::string_view text)
{
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// A plain decimal with a leading zero of no use, such as "007", is none.
bool IsJsonNumber(std::string_view text)
{
    return IsDecimal(text) && (text.front() != '0' || text.size() == 1 || text[1] == '.');
}

} // namespace

JsonStream::JsonStream()
{
    m_levels.push_back({'}', true});
    m_pending = "{";
}

void JsonStream::BeginObject(std::string_view key)
{
    Open(key, '{', '}');
}

void JsonStream::BeginArray(std::string_view key)
{
    Open(key, '[', ']');
}

void JsonStream::Open(std::string_view key, char opening, char closing)
{
    StartMember(key);
    m_pending += opening;
    m_levels.push_back({closing, true});
}

void JsonStream::End()
{
    const Level level = m_levels.back();
    m_levels.pop_back();
    if (!level.isEmpty)
    {
        NewLine();
    }
    m_pending += level.closing;
    Print(m_pending);
    m_pending.clear();
}

void JsonStream::Text(std::string_view key, std::string_view text)
{
    Value(key, Quote(text));
}

void JsonStream::Flag(std::string_view key, bool value)
{
    Value(key, value ? "true" : "false");
}

void JsonStream::Null(std::string_view key)
{
    Value(key, "null");
}

void JsonStream::Number(std::string_view key, std::string_view digits)
{
    Value(key, IsJsonNumber(digits) ? std::string(digits) : Quote(digits));
}

void JsonStream::Scalar(std::string_view key, const nlohmann::ordered_json& value)
{
    Value(key, value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

void JsonStream::Value(std::string_view key, std::string_view written)
{
    StartMember(key);
    m_pending += written;
}

void JsonStream::StartMember(std::string_view key)
{
    if (!m_levels.back().isEmpty)
    {
        m_pending += ',';
    }
    m_levels.back().isEmpty = false;
    NewLine();
    if (!key.empty())
    {
        m_pending += Quote(key) + (LayoutOfJson() == JsonLayout::OneLine ? ":" : ": ");
    }
}

void JsonStream::NewLine()
{
    if (LayoutOfJson() == JsonLayout::OneLine)
    {
        return;
    }
    m_pending += '\n';
    m_pending.append(m_levels.size() * kIndentWidth, ' ');
}

void JsonStream::Finish()
{
    End();
    Print("\n");
}

} // namespace host
