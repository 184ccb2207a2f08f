#include "benchmarks/setting.h"

#include "port/files.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <stdexcept>

namespace benchmarks
{

namespace
{

// Name of the processor as the kernel tells it.
std::string Processor()
{
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);)
    {
        if (line.starts_with("model name"))
        {
            return line.substr(line.find(':') + 2U);
        }
    }
    return "unknown processor";
}

} // namespace

int RunGuarded(int (*body)())
{
    try
    {
        return body();
    }
    catch (const std::exception& raised)
    {
        std::fprintf(stderr, "benchmark failed: %s\n", raised.what());
        return 1;
    }
}

void PrintSetting(const char* question)
{
    const benchmark::CPUInfo& processors = benchmark::CPUInfo::Get();
    std::printf("%s\n", question);
    std::printf("machine:  %d x %s", processors.num_cpus, Processor().c_str());
    for (const benchmark::CPUInfo::CacheInfo& cache : processors.caches)
    {
        if (cache.type != "Instruction")
        {
            std::printf(", L%d %d KiB", cache.level, cache.size / 1024);
        }
    }
    if (!processors.load_avg.empty())
    {
        std::printf(", load %.1f", processors.load_avg.front());
    }
    std::printf("\ncompiler: %s, optimised\n", __VERSION__);
}

DataFolder::DataFolder(const std::string& name, std::uintmax_t bytesNeeded)
    : m_path(std::filesystem::path(port::ModuleFolder()) / name)
{
    std::filesystem::remove_all(m_path);
    std::filesystem::create_directory(m_path);
    const std::uintmax_t available = std::filesystem::space(m_path).available;
    if (available < bytesNeeded)
    {
        std::filesystem::remove_all(m_path);
        throw std::runtime_error(m_path.string() + " has " + std::to_string(available) +
                                 " bytes left, " + std::to_string(bytesNeeded) + " are needed");
    }
}

DataFolder::~DataFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace benchmarks
