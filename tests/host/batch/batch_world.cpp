#include "tests/host/batch/batch_world.h"

#include "host/batch/journal_place.h"
#include "host/batch/order_path.h"
#include "support/codepage.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace testing_support
{

namespace
{

namespace fs = std::filesystem;

std::string NameOf(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1);
}

} // namespace

BatchTest::BatchTest() : m_progress("SIGNCHECK_PROGRESS", m_folder.Path("progress").c_str())
{
    fs::remove(m_order); // the one of single checks
}

std::string BatchTest::Order(const std::string& name) const
{
    return m_orders.Write(name,
                          ReadWholeFile((fs::path(SIGNUTILS_CORPUS) / "pain001_v03.xml").string()));
}

std::string BatchTest::Named(const std::string& name) const
{
    const std::u8string path =
        fs::absolute(Utf8Path(m_orders.Path(name))).make_preferred().u8string();
    return {path.begin(), path.end()};
}

void BatchTest::Terms(const std::string& name, const std::string& json) const
{
    m_orders.Write(name + ".terms", json);
}

Answer BatchTest::Batch(const std::vector<std::string>& more) const
{
    return BatchOf(m_orders.Path(), more);
}

Answer BatchTest::BatchOf(const std::string& orders, const std::vector<std::string>& more) const
{
    auto arguments = CheckOfFile(orders, "auto", "Élodie Lefèvre");
    arguments[0] = "batch";
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunSigncheck(arguments);
}

std::map<std::string, nlohmann::json> BatchTest::Lines(const Answer& answer) const
{
    std::map<std::string, nlohmann::json> lines;
    std::istringstream stream(answer.output);
    for (std::string line; std::getline(stream, line);)
    {
        auto object = nlohmann::json::parse(line, nullptr, false);
        if (!object.is_object())
        {
            ADD_FAILURE() << "no JSON object: " << line << answer.errors;
            continue;
        }
        const std::string name =
            object.contains("file") ? NameOf(object["file"].get<std::string>()) : std::string();
        EXPECT_TRUE(lines.emplace(name, std::move(object)).second) << line;
    }
    return lines;
}

std::map<std::string, int> BatchTest::Rows()
{
    std::map<std::string, int> rows;
    for (const Row& row : m_database.Query(L"SELECT FILENAME FROM HST_SIGNRULES"))
    {
        ++rows[NameOf(support::Utf8FromWide(row.at(0).value_or(L"").c_str()))];
    }
    return rows;
}

std::vector<std::string> BatchTest::NamesInFolder() const
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(m_orders.Path()))
    {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string BatchTest::Journal() const
{
    return batch::JournalPath(host::OptionValues(), batch::AbsolutePath(m_orders.Path()));
}

} // namespace testing_support
