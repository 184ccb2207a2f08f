#pragma once

#include <filesystem>
#include <string>

namespace testing_support
{

/// A new folder of its own, removed with its contents at the end of the scope.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& Path() const noexcept { return m_path; }
    /// Path of a file or folder in it; nothing is created.
    std::string Path(const std::string& name) const;
    /// Writes a file with these bytes and returns its path.
    std::string Write(const std::string& name, const std::string& bytes) const;

private:
    std::string m_path;
};

/// What a path in UTF-8 names on every platform.
std::filesystem::path Utf8Path(const std::string& path);

/// All bytes of a file; fails the running test when it cannot be read.
std::string ReadWholeFile(const std::string& path);

/// A folder in memory where there is one, for TMPDIR: what is flushed to disk costs nothing there.
/// Null leaves the choice to the system.
const char* MemoryFolder();

/// Sets an environment variable for a scope and puts back what was there.
class ScopedEnvironment
{
public:
    /// A null value takes the variable away.
    ScopedEnvironment(const std::string& name, const char* value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::string m_name;
    std::string m_before;
    bool m_wasSet = false;
};

} // namespace testing_support
