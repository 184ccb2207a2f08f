#pragma once

#include "engine/control_totals.h"
#include "engine/order_amount.h"
#include "engine/pain_fields.h"
#include "engine/rows.h"

#include <string_view>

namespace engine
{

/// What a payment group says of its orders, as it is read. Take passes over fields of others.
struct PainGroup
{
    RemittanceHead head;
    ControlTotals totals;
    bool urgent = false;

    void Take(PainField field, std::string_view text);
};

/// One order, as it is read.
struct PainOrder
{
    OrderRow row;
    RawAmount amount;

    void Take(PainField field, std::string_view text);
};

} // namespace engine
