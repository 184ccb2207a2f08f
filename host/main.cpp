#include "host/command_line.h"
#include "host/exit_status.h"
#include "host/json_layout.h"
#include "host/output.h"
#include "host/output_format.h"
#include "host/palette.h"
#include "host/refusal.h"
#include "host/settings/sources.h"
#include "host/settings/unknown_variables.h"
#include "host/text.h"
#include "port/program.h"
#include "port/secrecy.h"
#include "support/casefold.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <exception>
#include <iterator>

namespace
{

constexpr const char* kLanguageVariable = "SIGNUTILS_LANG";
constexpr const char* kLanguages[] = {"", "en", "fr"};

// Commands know --json; what else asks for JSON is told to them as that.
void TellJson(host::OptionValues& values)
{
    if (values.Find(host::kOutputFormatOption) != nullptr)
    {
        const bool isJson = host::IsJson(host::OutputFormatFrom(values));
        values.AddUnlessThere("json", {isJson ? host::kFlagOn : host::kFlagOff, "output format"});
    }
}

// What was given first stays: command line, then environment, then files.
void CompleteSettings(const host::CommandSpec& command, host::OptionValues& values)
{
    const host::SettingsSources sources(values.Find(host::kConfigOption));
    sources.Complete(command, values);
    const host::OutputFormat format = host::OutputFormatFrom(command, values);
    TellJson(values);
    host::SettleColours(values);
    host::LayOutJson(format == host::OutputFormat::NdJson ? host::JsonLayout::OneLine
                                                          : host::JsonLayout::Readable);
}

void WarnOfUnknownLanguage()
{
    const std::string language = port::Utf8Environment(kLanguageVariable);
    const bool isKnown =
        std::any_of(std::begin(kLanguages), std::end(kLanguages),
                    [&language](const char* known)
                    { return support::EqualIgnoringAsciiCase(language.c_str(), known); });
    if (!isKnown)
    {
        host::Warn(std::string(kLanguageVariable) + ": " + host::Quoted(language) +
                   " is an unknown language; messages are in English. Set en or fr.");
    }
}

int Fail(int status, const std::string& message, bool asJson)
{
    host::Complain(message);
    if (asJson)
    {
        host::PrintJson({{"error", host::WithoutPasswords(message)}, {"status", status}});
    }
    return status;
}

int Run(const std::vector<std::string>& arguments)
{
    bool asJson = host::AsksForJson(arguments);
    try
    {
        host::CommandLine line = host::ReadCommandLine(arguments);
        if (line.command == nullptr)
        {
            host::Print(line.helpText);
            return host::kDone;
        }
        WarnOfUnknownLanguage();
        host::WarnOfUnknownVariables();
        CompleteSettings(*line.command, line.values);
        asJson = line.values.IsOn("json");
        return line.command->run(line.values);
    }
    catch (const host::Refusal& refusal)
    {
        return Fail(refusal.Status(), refusal.what(), asJson);
    }
    catch (const std::exception& failure)
    {
        return Fail(host::kCouldNotRun, std::string("unexpected failure: ") + failure.what(),
                    asJson);
    }
}

} // namespace

int main(int count, char** values)
{
    port::KeepMemoryPrivate();
    port::KeepNewFilesPrivate();
    port::FailBeyondFileLimit();
    port::UseUtf8Output();
    const int status = Run(port::Utf8Arguments(count, values));
    if (!host::FlushOutput())
    {
        host::Complain("standard output cannot be written. Check the disk or the reading program.");
        return status == host::kDone ? host::kCouldNotRun : status;
    }
    return status;
}
