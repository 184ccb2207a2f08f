#pragma once

#include "tests/host/signcheck_process.h"

#include <string>

namespace testing_support
{

/// A sample bank, and a folder with whatever the examples of the commands name: order files, a rule
/// file, a trace, a status report. Shell lines run there with signcheck on the path.
class ShellWorldTest : public SampleBankTest
{
protected:
    ShellWorldTest();

    /// What a shell line answers in a copy of the folder of its own.
    Answer RunInCopy(const std::string& line) const;

    /// The same of a command that goes on: it is told to end once it has printed `word`.
    Answer RunUntil(const std::string& word, const std::string& line) const;

    std::string m_world; ///< path of the folder
    ScopedEnvironment m_path;
};

} // namespace testing_support
