// The amounts that the demonstration and the list of example orders give are those of the files,
// read here without the code that the demonstration shows.

#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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

void AddOrder(OrderFile& file, long long cents)
{
    file.total += cents;
    file.largest = std::max(file.largest, cents);
    ++file.orders;
}

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

OrderFile ReadDocument(const std::string& document)
{
    OrderFile file;
    for (const std::string& amount : ElementTexts(document, "InstdAmt"))
    {
        AddOrder(file, Cents(amount));
    }
    EXPECT_EQ(file.total, Cents(ElementTexts(document, "CtrlSum").front()));
    EXPECT_EQ(std::to_string(file.orders), ElementTexts(document, "NbOfTxs").front());
    return file;
}

// Fixed records of 160 characters, or the fields of a SWIFT message.
OrderFile ReadLines(const std::string& text)
{
    OrderFile file;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
    {
        if (line.rfind("06", 0) == 0)
        {
            AddOrder(file, std::stoll(line.substr(102, 16)));
        }
        else if (line.rfind("08", 0) == 0)
        {
            EXPECT_EQ(file.total, std::stoll(line.substr(102, 16)));
        }
        else if (line.rfind(":32B:EUR", 0) == 0)
        {
            std::string amount = line.substr(8);
            amount.replace(amount.find(','), 1, ".");
            AddOrder(file, std::llround(std::stod(amount) * 100));
        }
    }
    return file;
}

std::map<std::string, OrderFile> OrderFiles()
{
    std::map<std::string, OrderFile> files;
    for (const auto& entry : std::filesystem::directory_iterator(kSources + "/examples/orders"))
    {
        const std::string kind = entry.path().extension().string();
        if (kind == ".md")
        {
            continue;
        }
        SCOPED_TRACE(entry.path().string());
        const std::string text = ReadWholeFile(entry.path().string());
        files[entry.path().stem().string()] = kind == ".xml" ? ReadDocument(text) : ReadLines(text);
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
        if (fields.size() < 7 || fields[1].find('.') == std::string::npos)
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
    std::size_t given = 0;
    std::istringstream script(ReadWholeFile(kSources + "/scripts/demo"));
    for (std::string line; std::getline(script, line);)
    {
        const auto fields = Fields(line);
        if (fields.size() != 11 || files.count(fields[0]) == 0)
        {
            continue;
        }
        const OrderFile& file = files.at(fields[0]);
        EXPECT_EQ(file.total, Cents(fields[5])) << line;
        EXPECT_EQ(file.largest, Cents(fields[6])) << line;
        const bool isGiven = fields[4] == "given";
        EXPECT_EQ(isGiven ? "-" : std::to_string(file.orders), fields[7]) << line;
        ++checks;
        given += isGiven ? 1U : 0U;
    }
    EXPECT_GE(checks, 18U);
    EXPECT_GE(given, 1U);
    EXPECT_LE(given, 2U) << "amounts come from the files";
}

} // namespace
} // namespace testing_support
