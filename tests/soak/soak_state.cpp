#include "tests/soak/soak_state.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace soak
{

State LoadState(const std::string& path)
{
    std::ifstream stream(path);
    if (!stream)
    {
        return {};
    }
    const auto json = nlohmann::json::parse(stream);
    return {json.at("milliseconds"), json.at("checks"), json.at("rows"), json.at("events")};
}

void SaveState(const std::string& path, const State& state)
{
    const std::string temporary = path + ".new";
    std::ofstream stream(temporary);
    stream << nlohmann::json{{"milliseconds", state.milliseconds},
                             {"checks", state.checks},
                             {"rows", state.rows},
                             {"events", state.events}};
    stream.close();
    if (!stream)
    {
        throw std::runtime_error("cannot write " + temporary);
    }
    std::filesystem::rename(temporary, path);
}

Footprint MeasureFootprint()
{
    Footprint footprint;
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
    {
        if (word == "VmRSS:")
        {
            status >> footprint.residentKib;
        }
    }
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
    {
        ++footprint.openFiles;
    }
    return footprint;
}

} // namespace soak
