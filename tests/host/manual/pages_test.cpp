#include "host/manual/pages.h"

#include "host/command_table.h"
#include "host/manual/completed_value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace
{

using testing::HasSubstr;
using testing::StartsWith;

const manual::Page& PageOf(const std::string& name)
{
    static const std::vector<manual::Page> pages = manual::Pages();
    static const manual::Page none;
    const auto found = std::find_if(pages.begin(), pages.end(),
                                    [&name](const auto& page) { return page.name == name; });
    return found == pages.end() ? none : *found;
}

std::string PageName(const host::CommandSpec& command)
{
    std::string name = std::string("signcheck-") + command.name;
    std::replace(name.begin(), name.end(), ' ', '-');
    return name;
}

// A dash that a page shows as one.
std::string Dashed(std::string text)
{
    for (std::size_t at = text.find('-'); at != std::string::npos; at = text.find('-', at + 2))
    {
        text.replace(at, 1, "\\-");
    }
    return text;
}

TEST(ManualPages, EachCommandHasOneThatTheFirstNames)
{
    const std::string first = PageOf("signcheck").text;
    for (const host::CommandSpec& command : host::Commands())
    {
        const std::string name = PageName(command);
        EXPECT_THAT(PageOf(name).text, StartsWith(".TH " +
                                                  [&]
                                                  {
                                                      std::string title = Dashed(name);
                                                      std::transform(title.begin(), title.end(),
                                                                     title.begin(), ::toupper);
                                                      return title;
                                                  }() +
                                                  " 1 "));
        EXPECT_THAT(first, HasSubstr(Dashed(name) + "(1)"));
    }
    EXPECT_EQ(manual::Pages().size(), host::Commands().size() + 1);
}

TEST(ManualPages, NameEveryOptionByEachOfItsNames)
{
    for (const host::CommandSpec& command : host::Commands())
    {
        const std::string& page = PageOf(PageName(command)).text;
        for (const host::OptionSpec& option : command.options)
        {
            if (option.positional)
            {
                EXPECT_THAT(page, HasSubstr(std::string("\\fB") + option.placeholder + "\\fR"));
                continue;
            }
            for (const std::string& name : manual::DashedNamesOf(option))
            {
                EXPECT_THAT(page, HasSubstr(Dashed(name))) << command.name;
            }
        }
    }
}

TEST(ManualPages, HaveEveryExample)
{
    for (const host::CommandSpec& command : host::Commands())
    {
        const std::string& page = PageOf(PageName(command)).text;
        ASSERT_FALSE(command.examples.empty()) << command.name;
        const std::string examples = page.substr(page.find(".SH \"EXAMPLES\""));
        EXPECT_EQ(static_cast<std::size_t>(std::count(examples.begin(), examples.end(), '\n')) / 6,
                  command.examples.size())
            << command.name;
    }
}

TEST(ManualPages, TellWhichVariableAnOptionHas)
{
    const std::string& page = PageOf("signcheck-check").text;

    EXPECT_THAT(page, HasSubstr("Environment: SIGNCHECK_PARTNER."));
    EXPECT_THAT(page, testing::Not(HasSubstr("SIGNCHECK_TOTAL")));
}

TEST(ManualPages, TellHowACommandEnds)
{
    EXPECT_THAT(PageOf("signcheck-check").text,
                testing::AllOf(HasSubstr(".SH \"EXIT STATUS\""), HasSubstr("\\fB64\\fR")));
}

// Such a line would be taken for a request; other letters not every reader takes.
TEST(ManualPages, HoldRequestsOfTheirOwnAndAsciiOnly)
{
    for (const manual::Page& page : manual::Pages())
    {
        std::istringstream lines(page.text);
        for (std::string line; std::getline(lines, line);)
        {
            EXPECT_FALSE(line.starts_with('\''));
            const std::string request = line.substr(0, line.find(' '));
            if (line.starts_with('.'))
            {
                EXPECT_THAT((std::vector<std::string>{".TH", ".SH", ".SS", ".PP", ".TP", ".RS",
                                                      ".RE", ".nh", ".ad"}),
                            testing::Contains(request));
            }
            EXPECT_TRUE(std::all_of(line.begin(), line.end(),
                                    [](char letter) { return letter >= ' ' && letter < 127; }))
                << line;
        }
    }
}

} // namespace
