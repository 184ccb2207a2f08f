#pragma once

#include "tests/testing/temporary_folder.h"

#include <string>

namespace testing_support
{

/// Has every file for temporary use lie in one folder, on both platforms.
class TemporaryFilesIn
{
public:
    explicit TemporaryFilesIn(const std::string& folder)
        : m_posix("TMPDIR", folder.c_str()), m_windows("TMP", folder.c_str()),
          m_windowsToo("TEMP", folder.c_str())
    {
    }

private:
    ScopedEnvironment m_posix;
    ScopedEnvironment m_windows;
    ScopedEnvironment m_windowsToo;
};

} // namespace testing_support
