#include "tests/host/signcheck_process.h"

#include "schema/scripts.h"
#include "tests/testing/platform.h"

#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{

nlohmann::json Answer::Json() const
{
    auto object = nlohmann::json::parse(output, nullptr, false);
    EXPECT_TRUE(object.is_object()) << "not one JSON object: " << output << errors;
    return object;
}

Answer RunSigncheck(const std::vector<std::string>& arguments)
{
    const TemporaryFolder folder;
    Answer answer;
    answer.status =
        RunProgram(SIGNCHECK_PROGRAM, arguments, folder.Path("output"), folder.Path("errors"));
    answer.output = ReadWholeFile(folder.Path("output"));
    answer.errors = ReadWholeFile(folder.Path("errors"));
    return answer;
}

SampleBankTest::SampleBankTest()
    : m_spool("SIGNUTILS_SPOOL", m_folder.Path("spool").c_str()),
      m_handOff("SIGNUTILS_HANDOFF", m_folder.Path("handoff").c_str()),
      m_connection("SIGNCHECK_DB", nullptr), m_language("SIGNUTILS_LANG", nullptr),
      m_userSettings("XDG_CONFIG_HOME", m_folder.Path("config").c_str()),
      m_applicationData("APPDATA", m_folder.Path("config").c_str()),
      m_order(m_folder.Write("order.xml", "<Document/>"))
{
    const Answer answer = RunSigncheck({"init", "--db", Db(), "--sample"});
    EXPECT_EQ(answer.status, 0) << answer.errors;
}

std::vector<std::string> SampleBankTest::CheckOf(const std::string& signers) const
{
    return {"check",      m_order,    "--db",       m_database.ConnexionString(),
            "--partner",  "DUPONTSA", "--service",  "CCT",
            "--client",   "TRESOR",   "--protocol", "9",
            "--type",     "1",        "--signers",  signers,
            "--total",    "900.00",   "--largest",  "900.00",
            "--currency", "EUR"};
}

std::vector<std::string> SampleBankTest::CheckOfFile(const std::string& file,
                                                     const std::string& format,
                                                     const std::string& signers) const
{
    std::vector<std::string> arguments = CheckOf(signers);
    for (const std::string option : {"--total", "--largest", "--currency"})
    {
        arguments = Without(std::move(arguments), option);
    }
    arguments[1] = file;
    arguments.insert(arguments.end(), {"--format", format});
    return arguments;
}

std::vector<std::string> SampleBankTest::Without(std::vector<std::string> arguments,
                                                 const std::string& option)
{
    for (auto at = arguments.begin(); at != arguments.end(); ++at)
    {
        if (*at == option)
        {
            arguments.erase(at, at + 2);
            return arguments;
        }
    }
    ADD_FAILURE() << option << " is not there";
    return arguments;
}

std::vector<std::string> SampleBankTest::With(std::vector<std::string> arguments,
                                              const std::string& option, const std::string& value)
{
    arguments = Without(std::move(arguments), option);
    arguments.push_back(option);
    arguments.push_back(value);
    return arguments;
}

std::string SampleBankTest::WriteUserSettings(const std::string& toml) const
{
    std::filesystem::create_directories(Utf8Path(m_folder.Path("config/signcheck")));
    m_folder.Write("config/signcheck/config.toml", toml);
    const auto path = Utf8Path(m_folder.Path("config")) / "signcheck" / "config.toml";
    return path.string();
}

std::vector<std::vector<Row>> SampleBankTest::AllTables()
{
    std::vector<std::vector<Row>> tables;
    for (const std::string& table : schema::TableNames())
    {
        tables.push_back(
            m_database.Query(L"SELECT * FROM " + std::wstring(table.begin(), table.end())));
    }
    return tables;
}

std::size_t SampleBankTest::RecordsWritten()
{
    return m_database.Query(L"SELECT ROWNO FROM HST_SIGNRULES").size() +
           m_database.Query(L"SELECT EVENTID FROM EVT_JOURNAL").size();
}

} // namespace testing_support
