#pragma once

#include "database/row_layout.h"

#include <cstddef>

namespace rules
{

// Columns of the two queries, in the order of their statements.

inline constexpr std::size_t kNumberLength = 11;
inline constexpr std::size_t kOppositionLength = 20;

inline constexpr database::ColumnLayout kRuleColumns[] = {
    {"CUID", database::ColumnKind::Narrow, 64},
    {"VPNAME", database::ColumnKind::Narrow, 8},
    {"PROTOCOL", database::ColumnKind::Narrow, kNumberLength},
    {"SERVER", database::ColumnKind::Narrow, kNumberLength},
    {"VFNAME", database::ColumnKind::Narrow, 8},
    {"VCNAME", database::ColumnKind::Narrow, 8},
    {"TYPE", database::ColumnKind::Narrow, kNumberLength},
    {"PROFILE", database::ColumnKind::Narrow, kNumberLength},
    {"ALLHOLDERS", database::ColumnKind::Narrow, kNumberLength},
    {"OPPOSITION", database::ColumnKind::Narrow, kOppositionLength},
    {"HUID1", database::ColumnKind::Narrow, 64},
    {"HUID2", database::ColumnKind::Narrow, 64},
    {"ALONE", database::ColumnKind::Narrow, kNumberLength},
    {"AMOUNT", database::ColumnKind::Narrow, 32},
    {"TLEVEL", database::ColumnKind::Narrow, kNumberLength},
};

inline constexpr database::ColumnLayout kContractColumns[] = {
    {"CUID", database::ColumnKind::Narrow, 64},
    {"VPNAME", database::ColumnKind::Narrow, 8},
    {"PTC", database::ColumnKind::Narrow, kNumberLength},
    {"VFNAME", database::ColumnKind::Narrow, 8},
    {"VCNAME", database::ColumnKind::Narrow, 8},
    {"ALLHOLDERS", database::ColumnKind::Narrow, kNumberLength},
    {"OPPOSITION", database::ColumnKind::Narrow, kOppositionLength},
    {"SERVER", database::ColumnKind::Narrow, kNumberLength},
};

} // namespace rules
