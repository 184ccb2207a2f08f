#include "benchmarks/pgbench.h"

#include "benchmarks/check_statements.h"
#include "database/connection_string.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <regex>

namespace benchmarks
{

namespace
{

// The key is made by the server, from a number that pgbench draws.
std::string ScriptOf(const std::vector<std::u16string>& statements)
{
    std::string script = "\\set key random(1, 9000000000000000000)\n";
    for (const std::u16string& each : statements)
    {
        // ODBC's escape of a function, which the driver takes away.
        std::string text =
            std::regex_replace(Ascii(each), std::regex(R"(\{fn ([A-Z]+\(\))\})"), "$1");
        if (IsEvent(each))
        {
            const KeyPlace key = PlaceOfKey(each);
            text.replace(key.begin - 1U, key.length + 2U,
                         "'pgbench-' || lpad((:key)::text, 28, '0')");
        }
        script += text + ";\n";
    }
    return script;
}

// Texts of this program's own server, or of a tester's environment: no quotes.
std::string CommandFor(const std::string& connexionString, const std::string& script,
                       std::size_t clients, std::uint64_t checksOfEach)
{
    const database::ConnectionString parts(connexionString);
    const std::string count = std::to_string(clients);
    return "PGPASSWORD='" + parts.Value("PWD") + "' pgbench --no-vacuum --client=" + count +
           " --jobs=" + count + " --transactions=" + std::to_string(checksOfEach) + " --file='" +
           script + "' --host='" + parts.Value("SERVER") + "' --port='" + parts.Value("PORT") +
           "' --username='" + parts.Value("UID") + "' '" + parts.Value("DATABASE") + "' 2>&1";
}

} // namespace

void PrintPgbench(const std::string& connexionString, const std::vector<std::u16string>& statements,
                  std::size_t clients, std::uint64_t checksOfEach)
{
    const std::filesystem::path script =
        std::filesystem::temp_directory_path() / "signutils-check.pgbench";
    std::ofstream(script) << ScriptOf(statements);
    const std::string command = CommandFor(connexionString, script.string(), clients, checksOfEach);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> program(popen(command.c_str(), "r"),
                                                                  pclose);
    std::string said;
    std::array<char, 1024> block{};
    while (program != nullptr && std::fgets(block.data(), block.size(), program.get()) != nullptr)
    {
        double rate = 0.0;
        if (std::sscanf(block.data(), "tps = %lf", &rate) == 1)
        {
            std::printf(
                "  pgbench, a connection each            %11.2f us a check, %.0f a second\n",
                1e6 / rate, rate);
            std::filesystem::remove(script);
            return;
        }
        if (said.empty() || said.find("ERROR") == std::string::npos)
        {
            said = block.data();
        }
    }
    std::filesystem::remove(script);
    std::printf("  pgbench gives no rate: %s", said.c_str());
}

} // namespace benchmarks
