#include "host/palette.h"

#include "host/output_format.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/program.h"

namespace host
{

namespace
{

constexpr const char* kPlain = "\x1b[0m";

// Of the process: it answers one command.
bool isOutputColoured = false;
bool areErrorsColoured = false;

const char* SequenceOf(Tone tone)
{
    switch (tone)
    {
    case Tone::Good:
        return "\x1b[32m";
    case Tone::Bad:
        return "\x1b[31m";
    case Tone::Doubtful:
        break;
    }
    return "\x1b[33m";
}

std::string ChoiceFrom(const OptionValues& values)
{
    const OptionValue* const value = values.Find(kColorOption);
    if (value == nullptr)
    {
        return "auto";
    }
    if (value->text != "auto" && value->text != "always" && value->text != "never")
    {
        throw UsageRefusal(value->origin + ": " + Quoted(value->text) +
                           " is none of the choices. Give one of: auto, always, never.");
    }
    return value->text;
}

} // namespace

std::string Painted(bool isColoured, Tone tone, const std::string& text)
{
    return isColoured && !text.empty() ? SequenceOf(tone) + text + kPlain : text;
}

void SettleColours(const OptionValues& values)
{
    const std::string choice = ChoiceFrom(values);
    // Asked first: a console of Windows takes sequences only once it was asked to.
    const bool outputTakesThem = port::OutputTakesColours();
    const bool errorsTakeThem = port::ErrorTakesColours();
    const bool isWanted = choice == "auto" && port::Utf8Environment("NO_COLOR").empty();
    const bool isForPeople = OutputFormatFrom(values) == OutputFormat::Table;
    isOutputColoured = isForPeople && (choice == "always" || (isWanted && outputTakesThem));
    areErrorsColoured = choice == "always" || (isWanted && errorsTakeThem);
}

std::string ForOutput(Tone tone, const std::string& text)
{
    return Painted(isOutputColoured, tone, text);
}

std::string ForErrors(Tone tone, const std::string& text)
{
    return Painted(areErrorsColoured, tone, text);
}

bool AreErrorsColoured()
{
    return areErrorsColoured;
}

} // namespace host
