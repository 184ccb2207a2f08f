#include "host/rulebook/rule_file.h"

namespace rulebook
{

void Places::Add(const std::string& path, std::size_t line)
{
    m_lines.emplace(path, line);
}

bool Places::Has(const std::string& path) const
{
    return m_lines.find(path) != m_lines.end();
}

std::size_t Places::LineOf(std::string path) const
{
    for (;;)
    {
        if (const auto found = m_lines.find(path); found != m_lines.end())
        {
            return found->second;
        }
        const std::size_t end = path.find_last_of(".[");
        if (end == std::string::npos)
        {
            return 1;
        }
        path.resize(end);
    }
}

std::string Places::FieldOf(std::string_view path)
{
    std::string field;
    bool isIndex = false;
    for (const char letter : path)
    {
        isIndex = isIndex || letter == '[';
        field += isIndex ? "" : std::string(1, letter);
        isIndex = isIndex && letter != ']';
    }
    return field;
}

std::string Places::Item(const std::string& list, std::size_t index)
{
    return list + "[" + std::to_string(index) + "]";
}

} // namespace rulebook
