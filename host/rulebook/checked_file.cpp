#include "host/rulebook/checked_file.h"

#include "host/file_text.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/rulebook/validation.h"
#include "host/text.h"

namespace rulebook
{

namespace
{

constexpr std::int64_t kLargestRuleFileMiB = 64;

} // namespace

const host::OptionValue& RuleFileArgument(const host::OptionValues& values)
{
    const host::OptionValue* const path = values.Find("file");
    if (path == nullptr)
    {
        throw host::UsageRefusal("argument FILE is missing. Give the path of a rule file, such as "
                                 "signcheck rules export prints.");
    }
    return *path;
}

CheckedFile CheckRuleFile(const host::OptionValue& path, const RuleBook* database)
{
    CheckedFile checked;
    checked.name = host::Printable(path.text);
    const std::string toml = host::ReadTextFile(path, "the rule file", kLargestRuleFileMiB);
    checked.file = ReadRuleFile(toml, checked.problems);
    Validate(checked.file, database, checked.problems);
    return checked;
}

void RefuseProblems(const CheckedFile& checked, const std::string& consequence)
{
    for (const Problem& problem : checked.problems.InOrder())
    {
        host::Complain(TextOf(problem, checked.name));
    }
    if (checked.problems.Errors() > 0)
    {
        throw host::Refusal(host::kFindings,
                            checked.name + " has " + Counted(checked.problems.Errors(), "problem") +
                                ". Correct " + (checked.problems.Errors() == 1 ? "it" : "them") +
                                " first; " + consequence);
    }
}

} // namespace rulebook
