#include "host/option_values.h"

#include <utility>

namespace host
{

void OptionValues::AddUnlessThere(const std::string& name, OptionValue value)
{
    m_values.emplace(name, std::move(value));
}

const OptionValue* OptionValues::Find(const std::string& name) const
{
    const auto found = m_values.find(name);
    return found == m_values.end() ? nullptr : &found->second;
}

bool OptionValues::IsOn(const std::string& flag) const
{
    const OptionValue* value = Find(flag);
    return value != nullptr && value->text == kFlagOn;
}

} // namespace host
