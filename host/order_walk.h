#pragma once

#include "amounts/tveufile.h"
#include "amounts/work_files.h"
#include "host/display_columns.h"

#include <cstdint>
#include <string>

namespace host
{

/// Takes the remittances of an order file one after another, each with its orders.
class OrderVisitor
{
public:
    virtual ~OrderVisitor() = default;

    virtual void BeginRemittance() = 0;
    /// Once for each currency of the remittance: its detail row and what its counts say.
    virtual void Currency(const amounts::DelimitedRow& row, const RowTotals& totals) = 0;
    virtual void BeginOrders() = 0;
    /// `number` counts the orders of the file from 1.
    virtual void Order(const amounts::DelimitedRow& row, std::uint64_t number) = 0;
    virtual void EndRemittance() = 0;
};

/// The rows of a work file up to the first without its marker, one in memory.
class RowCursor
{
public:
    explicit RowCursor(TDelimitedFile& file) : m_file(file), m_more(file.HasRow()) {}

    bool HasRow() const { return m_more && !Row().GetAt(amounts::kMarker).empty(); }
    const amounts::DelimitedRow& Row() const { return m_file.CurrentRow(); }
    void Pass() { m_more = m_file.NextRow(); }

private:
    TDelimitedFile& m_file;
    bool m_more;
};

/// The work files that an order display needs, all open at once.
class OrderWalk
{
public:
    /// `order` is the path of the order file, with its work files beside it; Windows-1252.
    explicit OrderWalk(const std::string& order);

    TVeuFile& Remittances() noexcept { return m_details; }
    TVeuFile& Orders() noexcept { return m_orders; }

    /// Shows all to the visitor, once. Orders that no remittance counts come last, in a remittance
    /// without a currency, so that none is kept back.
    void Show(OrderVisitor& visitor);

private:
    TVeuFile m_details;
    TDelimitedFile m_counts;
    TVeuFile m_orders;
};

} // namespace host
