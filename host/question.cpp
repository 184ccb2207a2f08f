#include "host/question.h"

#include "host/output.h"
#include "host/refusal.h"
#include "port/program.h"

#include <iostream>

namespace host
{

void RequireAnswer(const OptionValues& values, const std::string& lookFirst)
{
    if (values.IsOn("yes"))
    {
        return;
    }
    if (values.IsOn("json"))
    {
        throw UsageRefusal("option --json leaves no room for a question. " + lookFirst +
                           ", then give --yes as well.");
    }
    if (!port::InputIsTerminal())
    {
        throw UsageRefusal("standard input is no terminal, so nobody can be asked. " + lookFirst +
                           ", then give --yes.");
    }
}

bool IsAgreed(const OptionValues& values, const std::string& question)
{
    if (values.IsOn("yes"))
    {
        return true;
    }
    Print(question + " yes or no: ");
    FlushOutput();
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "yes" || answer == "y";
}

} // namespace host
