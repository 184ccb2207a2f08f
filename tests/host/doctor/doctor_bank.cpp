#include "tests/host/doctor/doctor_bank.h"

#include "database/cdatabase.h"
#include "database/connection_string.h"
#include "port/files.h"

#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{

DoctorBank::DoctorBank()
    : m_temporary(m_temporaryFolder.Path()),
      m_config("SIGNUTILS_CONFIG", SIGNUTILS_SOURCES "/amounts"),
      m_progress("SIGNCHECK_PROGRESS", m_folder.Path("progress").c_str())
{
    for (const char* const name : {"spool", "handoff", "progress"})
    {
        EXPECT_TRUE(port::CreatePrivateFolder(m_folder.Path(name).c_str()));
    }
    CDatabase database;
    database.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    m_product = database.GetDialect().product;
    if (const std::string file = DatabaseFile(); !file.empty())
    {
        std::filesystem::permissions(std::filesystem::path(file).parent_path(),
                                     std::filesystem::perms::owner_all);
    }
}

Answer DoctorBank::Doctor(const std::vector<std::string>& more) const
{
    return DoctorOf(Db(), more);
}

Answer DoctorBank::DoctorOf(const std::string& connection, const std::vector<std::string>& more)
{
    std::vector<std::string> arguments = {"doctor", "--json", "--db", connection};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunSigncheck(arguments);
}

std::vector<std::string> DoctorBank::Told(const Answer& answer, const std::string& check)
{
    std::vector<std::string> told;
    const nlohmann::json json = answer.Json();
    for (const auto& each : json["checks"])
    {
        if (each["check"] == check)
        {
            told.push_back(each["result"].get<std::string>() + ": " +
                           each["found"].get<std::string>() + " | " +
                           (each["remedy"].is_null() ? "" : each["remedy"].get<std::string>()));
        }
    }
    return told;
}

std::string DoctorBank::DatabaseFile() const
{
    return m_product == database::Product::Sqlite
               ? database::ConnectionString(Db()).Value("DATABASE")
               : std::string();
}

} // namespace testing_support
