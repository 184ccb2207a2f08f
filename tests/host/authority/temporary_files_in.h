#pragma once

#include "tests/testing/temporary_folder.h"
#include "tests/testing/temporary_folder_name.h"

#include <filesystem>
#include <string>
#include <vector>

namespace testing_support
{

/// Has every file for temporary use lie in one folder, on both platforms.
class TemporaryFilesIn
{
public:
    explicit TemporaryFilesIn(const std::string& folder)
        : m_posix("TMPDIR", folder.c_str()), m_windows("TMP", folder.c_str()),
          m_windowsToo("TEMP", folder.c_str()), m_folder(folder)
    {
    }

    /// Names of what programs left in the folder. Folders of the tests' own do not count: Windows
    /// may take a while to remove what a program that ended had open.
    std::vector<std::string> Left() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Utf8Path(m_folder)))
        {
            if (const std::string name = entry.path().filename().string();
                !name.starts_with(kTemporaryFolderPrefix))
            {
                names.push_back(name);
            }
        }
        return names;
    }

private:
    ScopedEnvironment m_posix;
    ScopedEnvironment m_windows;
    ScopedEnvironment m_windowsToo;
    std::string m_folder;
};

} // namespace testing_support
