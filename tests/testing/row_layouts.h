#pragma once

#include "database/row_layout.h"

#include <gtest/gtest.h>

#include <span>

namespace testing_support
{

/// A layout has exactly these columns.
inline void ExpectLayout(const database::RowLayout& row,
                         std::span<const database::ColumnLayout> columns)
{
    ASSERT_EQ(row.count, columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
    {
        EXPECT_STREQ(row.columns[i].name, columns[i].name);
        EXPECT_EQ(row.columns[i].kind, columns[i].kind) << columns[i].name;
        EXPECT_EQ(row.columns[i].length, columns[i].length) << columns[i].name;
    }
}

} // namespace testing_support
