// Writes the manual pages and the completion of each shell into the folders of the build.
//
// Usage: signcheck_manual FOLDER      with man1, bash, zsh and fish in it

#include "host/manual/completion.h"
#include "host/manual/pages.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace
{

namespace fs = std::filesystem;

bool Write(const fs::path& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file)
    {
        std::fprintf(stderr, "signcheck_manual: %s cannot be written. Make its folder first.\n",
                     path.string().c_str());
    }
    return !file.fail();
}

bool WritePages(const fs::path& folder)
{
    for (const manual::Page& page : manual::Pages())
    {
        if (!Write(folder / (page.name + ".1"), page.text))
        {
            return false;
        }
    }
    return true;
}

} // namespace

int main(int count, char** values)
{
    if (count != 2)
    {
        std::fputs("Usage: signcheck_manual FOLDER\n", stderr);
        return 64;
    }
    const fs::path folder = values[1];
    const bool isWritten = WritePages(folder / "man1") &&
                           Write(folder / "bash" / "signcheck", manual::BashCompletion()) &&
                           Write(folder / "zsh" / "_signcheck", manual::ZshCompletion()) &&
                           Write(folder / "fish" / "signcheck.fish", manual::FishCompletion());
    return isWritten ? 0 : 1;
}
