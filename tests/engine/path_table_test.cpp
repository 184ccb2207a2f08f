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

using Table = engine::PathTable<Mark>;

const Table kTable({{"Cdtr/Nm", Mark::Name}, {"Agt", Mark::Bank}, {"Agt/Nm", Mark::BankName}});

TEST(PathTable, ElementsAreFoundByTheirWholePath)
{
    const Table::Node creditor = kTable.Child(Table::kRoot, "Cdtr");
    const Table::Node agent = kTable.Child(Table::kRoot, "Agt");
    EXPECT_EQ(kTable.FieldOf(creditor), Mark::None);
    EXPECT_EQ(kTable.FieldOf(agent), Mark::Bank);
    EXPECT_EQ(kTable.FieldOf(kTable.Child(creditor, "Nm")), Mark::Name);
    EXPECT_EQ(kTable.FieldOf(kTable.Child(agent, "Nm")), Mark::BankName);
    EXPECT_EQ(kTable.Parent(kTable.Child(agent, "Nm")), agent);
    EXPECT_EQ(kTable.Parent(agent), Table::kRoot);
}

TEST(PathTable, ElementsItDoesNotNameAreNowhere)
{
    EXPECT_EQ(kTable.Child(Table::kRoot, "Nm"), Table::kNowhere);
    EXPECT_EQ(kTable.Child(Table::kRoot, "Agt "), Table::kNowhere);
    EXPECT_EQ(kTable.Child(Table::kRoot, ""), Table::kNowhere);
}

TEST(ChildMemo, GivesTheTablesAnswerHoweverOftenItIsAsked)
{
    engine::ChildMemo<Mark> memo(kTable);
    const Table::Node creditor = kTable.Child(Table::kRoot, "Cdtr");
    const Table::Node agent = kTable.Child(Table::kRoot, "Agt");
    const char* const name = "Nm";
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_EQ(memo.Child(creditor, name), kTable.Child(creditor, "Nm"));
        EXPECT_EQ(memo.Child(agent, name), kTable.Child(agent, "Nm"));
        EXPECT_EQ(memo.Child(Table::kRoot, name), Table::kNowhere);
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
    const Table::Node creditor = kTable.Child(Table::kRoot, "Cdtr");
    for (int round = 0; round < 2; ++round)
    {
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            ASSERT_EQ(memo.Child(Table::kRoot, names[i].c_str()),
                      i % 2 == 0 ? Table::kNowhere : creditor)
                << i;
        }
    }
}

} // namespace
