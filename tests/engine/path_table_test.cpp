#include "engine/path_table.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

enum class Mark
{
    None,
    Name,
    Bank,
    BankName,
};

using MarkTable = engine::PathTable<Mark>;

const MarkTable kTable({{"Cdtr/Nm", Mark::Name}, {"Agt", Mark::Bank}, {"Agt/Nm", Mark::BankName}});

TEST(PathTable, ElementsAreFoundByTheirWholePath)
{
    const MarkTable::Node creditor = kTable.Child(MarkTable::kRoot, "Cdtr");
    const MarkTable::Node agent = kTable.Child(MarkTable::kRoot, "Agt");
    EXPECT_EQ(kTable.FieldOf(creditor), Mark::None);
    EXPECT_EQ(kTable.FieldOf(agent), Mark::Bank);
    EXPECT_EQ(kTable.FieldOf(kTable.Child(creditor, "Nm")), Mark::Name);
    EXPECT_EQ(kTable.FieldOf(kTable.Child(agent, "Nm")), Mark::BankName);
    EXPECT_EQ(kTable.Parent(kTable.Child(agent, "Nm")), agent);
    EXPECT_EQ(kTable.Parent(agent), MarkTable::kRoot);
}

TEST(PathTable, ElementsItDoesNotNameAreNowhere)
{
    EXPECT_EQ(kTable.Child(MarkTable::kRoot, "Nm"), MarkTable::kNowhere);
    EXPECT_EQ(kTable.Child(MarkTable::kRoot, "Agt "), MarkTable::kNowhere);
    EXPECT_EQ(kTable.Child(MarkTable::kRoot, ""), MarkTable::kNowhere);
}

TEST(ChildMemo, GivesTheTablesAnswerHoweverOftenItIsAsked)
{
    engine::ChildMemo<Mark> memo(kTable);
    const MarkTable::Node creditor = kTable.Child(MarkTable::kRoot, "Cdtr");
    const MarkTable::Node agent = kTable.Child(MarkTable::kRoot, "Agt");
    const char* const name = "Nm";
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_EQ(memo.Child(creditor, name), kTable.Child(creditor, "Nm"));
        EXPECT_EQ(memo.Child(agent, name), kTable.Child(agent, "Nm"));
        EXPECT_EQ(memo.Child(MarkTable::kRoot, name), MarkTable::kNowhere);
    }
}

TEST(ChildMemo, MoreNamesThanItRemembersStayRight)
{
    engine::ChildMemo<Mark> memo(kTable);
    std::vector<std::string> names(2000, "Cdtr");
    for (std::size_t i = 0; i < names.size(); i += 2)
    {
        names[i] = "Other" + std::to_string(i);
    }
    const MarkTable::Node creditor = kTable.Child(MarkTable::kRoot, "Cdtr");
    for (int round = 0; round < 2; ++round)
    {
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            ASSERT_EQ(memo.Child(MarkTable::kRoot, names[i].c_str()),
                      i % 2 == 0 ? MarkTable::kNowhere : creditor)
                << i;
        }
    }
}

} // namespace
