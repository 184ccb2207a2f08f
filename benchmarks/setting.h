#pragma once

// Every benchmark includes this: figures of a debug build say nothing.
#if !defined(NDEBUG) || !defined(__OPTIMIZE__)
#error "Benchmarks are for optimised builds."
#endif

#include <filesystem>
#include <string>

namespace benchmarks
{

/// Runs the body of a benchmark; a std::exception is told on standard error. The exit status.
int RunGuarded(int (*body)());

/// Prints what the figures depend on: machine, load, caches, load and compiler.
void PrintSetting(const char* question);

/// A folder beside the program, where there is room for gigabytes that a temporary folder in memory
/// may not have. Empty at the start; removed with everything in it at the end.
class DataFolder
{
public:
    /// Raises std::runtime_error when less than `bytesNeeded` are free.
    DataFolder(const std::string& name, std::uintmax_t bytesNeeded);
    ~DataFolder();
    DataFolder(const DataFolder&) = delete;
    DataFolder& operator=(const DataFolder&) = delete;

    std::string Path(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

} // namespace benchmarks
