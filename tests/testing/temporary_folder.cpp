#include "tests/testing/temporary_folder.h"

#include "tests/testing/platform.h"
#include "tests/testing/temporary_folder_name.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

namespace testing_support
{

TemporaryFolder::TemporaryFolder()
{
    std::random_device random;
    const auto base = std::filesystem::temp_directory_path();
    for (int attempt = 0; attempt < 100; ++attempt)
    {
        std::ostringstream name;
        name << kTemporaryFolderPrefix << std::hex << random() << random();
        if (std::filesystem::create_directory(base / name.str()))
        {
            m_path = PathForDrivers((base / name.str()).string());
            return;
        }
    }
    ADD_FAILURE() << "no temporary folder could be made below " << base;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryFolder::Path(const std::string& name) const
{
    return m_path + "/" + name;
}

std::string TemporaryFolder::Write(const std::string& name, const std::string& bytes) const
{
    const std::string path = Path(name);
    std::ofstream stream(Utf8Path(path), std::ios::binary);
    stream << bytes;
    stream.close();
    EXPECT_TRUE(stream.good()) << path;
    return path;
}

std::filesystem::path Utf8Path(const std::string& path)
{
    return std::u8string(path.begin(), path.end());
}

std::string ReadWholeFile(const std::string& path)
{
    std::ifstream stream(Utf8Path(path), std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << path;
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

const char* MemoryFolder()
{
    constexpr const char* folder = "/dev/shm";
    std::error_code error;
    return std::filesystem::is_directory(folder, error) ? folder : std::getenv("TMPDIR");
}

ScopedEnvironment::ScopedEnvironment(const std::string& name, const char* value) : m_name(name)
{
    if (const char* before = std::getenv(name.c_str()); before != nullptr)
    {
        m_wasSet = true;
        m_before = before;
    }
    SetVariable(m_name, value);
}

ScopedEnvironment::~ScopedEnvironment()
{
    SetVariable(m_name, m_wasSet ? m_before.c_str() : nullptr);
}

} // namespace testing_support
