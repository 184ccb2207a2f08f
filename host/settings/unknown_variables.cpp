#include "host/settings/unknown_variables.h"

#include "host/command_table.h"
#include "host/output.h"
#include "host/settings/variables.h"
#include "host/suggestion.h"
#include "host/text.h"
#include "port/program.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace host
{

namespace
{

constexpr std::string_view kLead = "SIGNCHECK_";
// No option has it, signcheck reads it all the same.
constexpr const char* kProgress = "SIGNCHECK_PROGRESS";

/// The variables of all options.
struct Named
{
    std::vector<std::string> known{kProgress};
    std::set<std::string> ofOneRun;
};

Named NamedAfterOptions()
{
    Named named;
    for (const CommandSpec& command : Commands())
    {
        for (const OptionSpec& option : command.options)
        {
            if (MayComeFromEnvironment(option.name))
            {
                named.known.push_back(VariableOf(option.name));
            }
            else if (!option.positional)
            {
                named.ofOneRun.insert(VariableOf(option.name));
            }
        }
    }
    return named;
}

// Of the letters behind the lead: what all names begin with makes none of them alike.
std::string NearestTo(const std::string& name, const std::vector<std::string>& known)
{
    std::string rest = name.substr(kLead.size());
    std::transform(rest.begin(), rest.end(), rest.begin(),
                   [](char letter)
                   {
                       const bool isSmall = letter >= 'a' && letter <= 'z';
                       return isSmall ? static_cast<char>(letter - ('a' - 'A')) : letter;
                   });
    std::vector<std::string> candidates;
    candidates.reserve(known.size());
    for (const std::string& each : known)
    {
        candidates.push_back(each.substr(kLead.size()));
    }
    const std::string nearest = Nearest(rest, candidates);
    return nearest.empty() ? nearest : std::string(kLead) + nearest;
}

bool IsSet(const std::string& name)
{
    return !port::Utf8Environment(name.c_str()).empty();
}

} // namespace

std::vector<UnknownVariable> UnknownVariables()
{
    const Named named = NamedAfterOptions();
    std::vector<UnknownVariable> unknown;
    for (const std::string& name : port::Utf8EnvironmentNames())
    {
        const bool isKnown =
            std::find(named.known.begin(), named.known.end(), name) != named.known.end();
        if (!name.starts_with(kLead) || isKnown || !IsSet(name))
        {
            continue;
        }
        const bool isOfOneRun = named.ofOneRun.contains(name);
        unknown.push_back(
            {name, isOfOneRun ? std::string() : NearestTo(name, named.known), isOfOneRun});
    }
    std::sort(unknown.begin(), unknown.end(),
              [](const auto& left, const auto& right) { return left.name < right.name; });
    return unknown;
}

std::string InWords(const UnknownVariable& variable)
{
    const std::string name = Printable(variable.name);
    if (variable.isOfOneRun)
    {
        return name +
               " is not read: what belongs to one order or run is given on the command line.";
    }
    return name + " is not known" +
           (variable.meant.empty() ? "." : "; did you mean " + variable.meant + "?");
}

void WarnOfUnknownVariables()
{
    for (const UnknownVariable& variable : UnknownVariables())
    {
        if (variable.IsMistake())
        {
            Warn(InWords(variable));
        }
    }
}

} // namespace host
