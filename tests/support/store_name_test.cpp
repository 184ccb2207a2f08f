#include "support/store_name.h"

#include "port/files.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

struct NameCase
{
    const char* name;
    std::string text;
    bool accepted;
};

class StoreName : public testing::TestWithParam<NameCase>
{
};

TEST_P(StoreName, IsAcceptedOnlyWhenItStaysInItsFolder)
{
    EXPECT_EQ(support::IsStoreName(GetParam().text), GetParam().accepted);
}

INSTANTIATE_TEST_SUITE_P(
    Names, StoreName,
    testing::Values(
        NameCase{"Plain", "PARTNER1", true}, NameCase{"OneLetter", "P", true},
        NameCase{"WithPoint", "A.B", true}, NameCase{"LeadingPoint", ".hidden", true},
        NameCase{"InnerBlank", "A B", true}, NameCase{"LeadingBlank", " A", true},
        NameCase{"Accent", "SOCI\xC9T\xC9", true}, NameCase{"Apostrophe", "O'BRIEN", true},
        NameCase{"Empty", "", false}, NameCase{"Point", ".", false},
        NameCase{"Parent", "..", false}, NameCase{"ThreePoints", "...", false},
        NameCase{"FinalPoint", "A.", false}, NameCase{"FinalBlank", "A ", false},
        NameCase{"OnlyBlank", " ", false}, NameCase{"Slash", "A/B", false},
        NameCase{"Backslash", "A\\B", false}, NameCase{"RootSlash", "/etc", false},
        NameCase{"Drive", "C:", false}, NameCase{"Stream", "A:B", false},
        NameCase{"Star", "A*", false}, NameCase{"QuestionMark", "A?", false},
        NameCase{"Quote", "A\"", false}, NameCase{"Less", "A<", false},
        NameCase{"Greater", "A>", false}, NameCase{"Bar", "A|B", false},
        NameCase{"LineFeed", "A\nB", false}, NameCase{"Tab", "A\tB", false},
        NameCase{"Nul", std::string("A\0B", 3), false}, NameCase{"Delete", "A\x7F", false},
        NameCase{"Device", "NUL", false}, NameCase{"DeviceInSmallLetters", "con", false},
        NameCase{"DeviceAux", "AUX", false}, NameCase{"DevicePrn", "Prn", false},
        NameCase{"DeviceWithExtension", "NUL.txt", false},
        NameCase{"DeviceWithBlankAndExtension", "NUL .txt", false},
        NameCase{"Console", "CONOUT$", false}, NameCase{"SerialPort", "COM1", false},
        NameCase{"SerialPortZero", "com0", false}, NameCase{"PrinterPort", "LPT9", false},
        NameCase{"SuperscriptPort", "COM\xB2", false}, NameCase{"PortWithoutNumber", "COM", true},
        NameCase{"PortWithTwoDigits", "COM10", true}, NameCase{"LongerThanADevice", "NULL", true},
        NameCase{"DeviceAtTheEnd", "A.NUL", true}),
    [](const auto& run) { return run.param.name; });

TEST(ExtensionOf, IsWhatFollowsTheLastPointOfTheLastElement)
{
    const std::string separator(1, port::PathSeparator());
    EXPECT_EQ(support::ExtensionOf("report.psr"), "psr");
    EXPECT_EQ(support::ExtensionOf(separator + "tmp" + separator + "a.b.hac"), "hac");
    EXPECT_EQ(support::ExtensionOf(separator + "folder.d" + separator + "report"), "");
    EXPECT_EQ(support::ExtensionOf("report"), "");
    EXPECT_EQ(support::ExtensionOf("report."), "");
    EXPECT_EQ(support::ExtensionOf(""), "");
}

} // namespace
