// The amounts that the demonstration and the list of example orders give are those of the files.

#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace testing_support
{
namespace
{

const std::string kSources = SIGNUTILS_SOURCES;

/// What an order file holds; amounts in cents.
struct OrderFile
{
    long long total = 0;
    long long largest = 0;
    std::size_t orders = 0;
};

long long Cents(std::string amount)
{
    amount.erase(std::remove(amount.begin(), amount.end(), '.'), amount.end());
    return std::stoll(amount);
}

std::vector<std::string> ElementTexts(const std::string& document, const std::string& name)
{
    std::vector<std::string> texts;
    std::size_t at = 0;
    while ((at = document.find("<" + name, at)) != std::string::npos)
    {
        const std::size_t begin = document.find('>', at) + 1;
        at = document.find("</" + name + ">", begin);
        texts.push_back(document.substr(begin, at - begin));
    }
    return texts;
}

std::map<std::string, OrderFile> OrderFiles()
{
    std::map<std::string, OrderFile> files;
    for (const auto& entry : std::filesystem::directory_iterator(kSources + "/examples/orders"))
    {
        if (entry.path().extension() != ".xml")
        {
            continue;
        }
        const std::string document = ReadWholeFile(entry.path().string());
        OrderFile file;
        for (const std::string& amount : ElementTexts(document, "InstdAmt"))
        {
            file.total += Cents(amount);
            file.largest = std::max(file.largest, Cents(amount));
            ++file.orders;
        }
        EXPECT_EQ(file.total, Cents(ElementTexts(document, "CtrlSum").front())) << entry.path();
        EXPECT_EQ(std::to_string(file.orders), ElementTexts(document, "NbOfTxs").front())
            << entry.path();
        files[entry.path().stem().string()] = file;
    }
    return files;
}

std::vector<std::string> Fields(const std::string& line)
{
    std::vector<std::string> fields;
    std::istringstream stream(line);
    for (std::string field; std::getline(stream, field, '|');)
    {
        const std::size_t first = field.find_first_not_of(" `");
        const std::size_t last = field.find_last_not_of(" `");
        fields.push_back(first == std::string::npos ? "" : field.substr(first, last - first + 1));
    }
    return fields;
}

TEST(ExampleOrders, AreAtLeastTen)
{
    EXPECT_GE(OrderFiles().size(), 10U);
}

TEST(ExampleOrders, HaveTheAmountsOfTheirList)
{
    auto files = OrderFiles();
    std::istringstream list(ReadWholeFile(kSources + "/examples/orders/README.md"));
    for (std::string line; std::getline(list, line);)
    {
        const auto fields = Fields(line);
        if (fields.size() < 7 || fields[1].find(".xml") == std::string::npos)
        {
            continue;
        }
        const std::string name = std::filesystem::path(fields[1]).stem().string();
        ASSERT_EQ(files.count(name), 1U) << name;
        EXPECT_EQ(std::to_string(files[name].orders), fields[4]) << name;
        EXPECT_EQ(files[name].total, Cents(fields[5])) << name;
        EXPECT_EQ(files[name].largest, Cents(fields[6])) << name;
        files.erase(name);
    }
    EXPECT_TRUE(files.empty()) << files.begin()->first << " is not in the list";
}

TEST(ExampleOrders, AreJudgedByTheDemonstrationWithTheirOwnAmounts)
{
    const auto files = OrderFiles();
    std::size_t checks = 0;
    std::istringstream script(ReadWholeFile(kSources + "/scripts/demo"));
    for (std::string line; std::getline(script, line);)
    {
        const auto fields = Fields(line);
        if (fields.size() != 9 || files.count(fields[0]) == 0)
        {
            continue;
        }
        EXPECT_EQ(files.at(fields[0]).total, Cents(fields[4])) << line;
        EXPECT_EQ(files.at(fields[0]).largest, Cents(fields[5])) << line;
        ++checks;
    }
    EXPECT_GE(checks, 10U);
}

} // namespace
} // namespace testing_support
