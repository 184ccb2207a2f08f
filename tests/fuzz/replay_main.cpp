#include "tests/fuzz/target.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

// Runs a fuzz target once on every file of the folders named, without a fuzzing engine: so that the
// tests run the inputs that were found, with any compiler.

namespace
{

void RunFile(const std::filesystem::path& path)
{
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    const std::string input = std::move(bytes).str();
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

} // namespace

int main(int argc, char** argv)
{
    int count = 0;
    for (const std::string& folder : std::vector<std::string>(argv + 1, argv + argc))
    {
        for (const auto& entry : std::filesystem::directory_iterator(folder))
        {
            // Tells which input it was when the target ends the process.
            std::fprintf(stderr, "%s\n", entry.path().string().c_str());
            RunFile(entry.path());
            ++count;
        }
    }
    std::fprintf(stderr, "%d inputs without a finding\n", count);
    return count > 0 ? 0 : 1;
}
