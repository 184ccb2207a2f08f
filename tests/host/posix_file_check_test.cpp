// Checks whose engine the class registry file does not lead to.

#include "tests/engine/work_files.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace fs = std::filesystem;

class PosixFileCheckWithoutEngine : public SampleBankTest
{
protected:
    // What signcheck says when this is the class registry.
    void ExpectUnknown(const std::string& registry, const std::string& remedy)
    {
        const ScopedEnvironment variable("SIGNUTILS_COM_REGISTRY", registry.c_str());
        const TemporaryFolder orders;
        const std::string order = orders.Path("pain001_v03.xml");
        fs::copy_file(fs::path(SIGNUTILS_CORPUS) / "pain001_v03.xml", order);
        auto arguments = CheckOfFile(order, "auto", "Élodie Lefèvre");
        arguments.emplace_back("--json");
        const Answer answer = RunSigncheck(arguments);

        EXPECT_EQ(answer.status, 4);
        EXPECT_THAT(answer.errors, AllOf(HasSubstr("UNKNOWN amounts"), HasSubstr(remedy)));
        EXPECT_EQ(answer.Json()["amounts"], "unknown");
        EXPECT_THAT(answer.Json()["amountsProblem"].get<std::string>(),
                    AllOf(HasSubstr("Initialize CFFmtRun Error"), HasSubstr(remedy)));
        EXPECT_THAT(engine_tests::Names(orders.Path()), ElementsAre("pain001_v03.xml"));
    }

    // A class registry that names this module for the engine.
    std::string RegistryOf(const std::string& module) const
    {
        return m_folder.Write("com.ini", "[InprocServer32]\n"
                                         "{4894D747-9646-40D9-BFD9-2A31050BEC91} = " +
                                             module + "\n");
    }
};

TEST_F(PosixFileCheckWithoutEngine, SaysThatNoneIsRegistered)
{
    ExpectUnknown(m_folder.Path("none.ini"),
                  "no conversion engine is registered (error 0x80040154)");
}

TEST_F(PosixFileCheckWithoutEngine, SaysThatItsModuleIsMissing)
{
    ExpectUnknown(RegistryOf(m_folder.Path("no-module.so")),
                  "the conversion engine cannot be started (error 0x8007007E)");
}

TEST_F(PosixFileCheckWithoutEngine, SaysThatItsModuleIsNone)
{
    ExpectUnknown(RegistryOf(m_folder.Write("module.so", "no module")),
                  "the conversion engine cannot be started (error 0x");
}

TEST_F(PosixFileCheckWithoutEngine, SaysThatItsModuleIsNoServer)
{
    const fs::path library =
        fs::path(SIGNCHECK_PROGRAM).parent_path().parent_path() / "lib" / "libsignutils-port.so";
    ASSERT_TRUE(fs::exists(library)) << library;
    ExpectUnknown(RegistryOf(library.string()),
                  "the conversion engine cannot be started (error 0x800401F9)");
}

} // namespace
} // namespace testing_support
