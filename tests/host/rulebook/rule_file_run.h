#pragma once

#include "tests/host/signcheck_process.h"

#include <string>
#include <vector>

namespace testing_support
{

/// Commands on rule files of the sample bank.
class RuleFileTest : public SampleBankTest
{
protected:
    /// signcheck rules `command` of a file with this text.
    Answer Rules(const std::string& command, const std::string& toml,
                 const std::vector<std::string>& more = {})
    {
        std::vector<std::string> arguments = {"rules", command, m_folder.Write("rules.toml", toml),
                                              "--db", Db()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }

    /// The rule file of the bank, or of one contract.
    std::string Exported(const std::string& cuid = "")
    {
        std::vector<std::string> arguments = {"rules", "export", "--db", Db()};
        if (!cuid.empty())
        {
            arguments.insert(arguments.end(), {"--contract", cuid});
        }
        const Answer answer = RunSigncheck(arguments);
        EXPECT_EQ(answer.status, 0) << answer.errors;
        return answer.output;
    }

    /// The text with one part in the place of another, which must stand in it once.
    static std::string Replaced(std::string text, const std::string& part, const std::string& by)
    {
        const std::size_t at = text.find(part);
        EXPECT_NE(at, std::string::npos) << part;
        EXPECT_EQ(text.find(part, at + 1), std::string::npos) << part;
        return text.replace(at, part.size(), by);
    }
};

} // namespace testing_support
