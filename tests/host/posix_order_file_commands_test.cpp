// What amounts, display and convert do where there is a class registry file and a shell.

#include "tests/host/order_files.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class PosixOrderFileCommand : public OrderFilesTest, public testing::WithParamInterface<const char*>
{
};

INSTANTIATE_TEST_SUITE_P(Commands, PosixOrderFileCommand,
                         testing::Values("amounts", "display", "convert"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(PosixOrderFileCommand, TellsThatTheEngineCannotBeHad)
{
    const ScopedEnvironment registry("SIGNUTILS_COM_REGISTRY", m_folder.Path("none.ini").c_str());

    const Answer answer = RunSigncheck({GetParam(), Transfers({Group("G1", {"EUR 10.00"})})});

    EXPECT_EQ(answer.status, 3) << answer.errors;
    EXPECT_EQ(answer.output, "");
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("Initialize CFFmtRun Error"),
                                     HasSubstr("no conversion engine is registered"),
                                     HasSubstr("SIGNUTILS_COM_REGISTRY")));
    EXPECT_THAT(Names(), ElementsAre("order.xml"));
}

TEST_P(PosixOrderFileCommand, LeavesNothingWhenItsReaderGoesAway)
{
    const std::string order = Transfers({Group("G1", std::vector<std::string>(5000, "EUR 1.00"))});
    const std::string command = std::string("'") + SIGNCHECK_PROGRAM + "' " + GetParam() + " '" +
                                order + "' 2>&1 | head -c 1 >/dev/null";

    ASSERT_EQ(std::system(command.c_str()), 0);

    EXPECT_THAT(Names(), ElementsAre("order.xml"));
}

} // namespace
} // namespace testing_support
