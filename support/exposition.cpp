#include "support/exposition.h"

namespace support
{

namespace
{

// What would end a value or its line.
void AppendEscaped(std::string& text, std::string_view value)
{
    for (const char character : value)
    {
        switch (character)
        {
        case '\\':
            text += "\\\\";
            break;
        case '"':
            text += "\\\"";
            break;
        case '\n':
            text += "\\n";
            break;
        default:
            text += character;
            break;
        }
    }
}

} // namespace

Exposition::Exposition(std::string_view source) : m_source(source) {}

void Exposition::Begin(const MetricFamily& family)
{
    m_family = family.name;
    m_text.append("# HELP ").append(m_family).append(" ").append(family.help).append("\n");
    m_text.append("# TYPE ").append(m_family).append(" ").append(family.type).append("\n");
}

void Exposition::Sample(std::string_view value, std::initializer_list<MetricLabel> labels,
                        const char* ending)
{
    m_text.append(m_family).append(ending).append("{");
    AppendLabel("source", m_source);
    for (const MetricLabel& each : labels)
    {
        m_text += ',';
        AppendLabel(each.name, each.value);
    }
    m_text.append("} ").append(value).append("\n");
}

void Exposition::AppendLabel(const char* name, std::string_view value)
{
    m_text.append(name).append("=\"");
    AppendEscaped(m_text, value);
    m_text += '"';
}

} // namespace support
