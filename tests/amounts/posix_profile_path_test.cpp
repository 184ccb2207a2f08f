#include "amounts/tveufile.h"

#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;

// Windows itself refuses paths of these lengths.

namespace
{

constexpr std::string_view kProfile = "[cp]\r\ncp_Amount=$CTL_MONTANT\r\n";

// Loads a section where the profile's path has this length and a file of the given name lies there.
int AmountColumn(std::size_t pathLength, std::string_view profileName)
{
    const TemporaryFolder folder;
    const std::size_t name = std::string_view("/CtlVEU.INI").size();
    const std::string subfolder(pathLength - name - folder.Path("").size(), 'x');
    std::filesystem::create_directory(folder.Path(subfolder));
    folder.Write(subfolder + "/" + std::string(profileName), std::string(kProfile));
    const ScopedEnvironment configuration("SIGNUTILS_CONFIG", folder.Path(subfolder).c_str());
    TVeuFile file(folder.Write("order.veu.cp", "A;CTL_MONTANT\r\n").c_str(), 1);
    file.LoadOrderSection("cp");
    return file.GetOrderColumns().amount;
}

TEST(PosixProfilePath, Of259CharactersIsRead)
{
    EXPECT_EQ(AmountColumn(259, "CtlVEU.INI"), 1);
}

TEST(PosixProfilePath, Of260CharactersIsNotReadEvenWhereTheCutOneIsThere)
{
    EXPECT_EQ(AmountColumn(260, "CtlVEU.INI"), -1);
    EXPECT_EQ(AmountColumn(260, "CtlVEU.IN"), -1);
}

} // namespace
