#pragma once

#include "tests/host/authority/temporary_files_in.h"
#include "tests/host/rulebook/rule_file_run.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace testing_support
{

/// Partner, service and client of a contract.
struct Parties
{
    const char* partner;
    const char* service;
    const char* client;
};

inline constexpr Parties kDupont = {"DUPONTSA", "CCT", "TRESOR"};   // C-1001
inline constexpr Parties kBodensee = {"BODENSEE", "CCT", "FINANZ"}; // C-7001

/// The sample bank with a history, and replays of it.
class ReplayTest : public RuleFileTest
{
protected:
    ReplayTest() : m_temporary(m_copies.Path()) {}

    /// Has the bank judge an order, which leaves its rows.
    void Check(const Parties& contract, const std::string& signers, const std::string& total,
               const std::string& orderId, const std::vector<std::string>& more = {})
    {
        auto arguments = CheckOf(signers);
        arguments = With(std::move(arguments), "--partner", contract.partner);
        arguments = With(std::move(arguments), "--service", contract.service);
        arguments = With(std::move(arguments), "--client", contract.client);
        arguments = With(std::move(arguments), "--total", total);
        arguments.insert(arguments.end(), {"--order-id", orderId});
        arguments.insert(arguments.end(), more.begin(), more.end());
        const Answer answer = RunSigncheck(arguments);
        EXPECT_LE(answer.status, 2) << answer.errors;
    }

    Answer Replay(const std::string& toml, const std::vector<std::string>& more = {})
    {
        std::vector<std::string> arguments = {"replay", "--rules",
                                              m_folder.Write("replayed.toml", toml), "--db", Db()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }

    nlohmann::json ReplayedJson(const std::string& toml, std::vector<std::string> more = {})
    {
        more.emplace_back("--json");
        return Replay(toml, more).Json();
    }

    TemporaryFolder m_copies; ///< where copies in files lie
    TemporaryFilesIn m_temporary;
};

} // namespace testing_support
