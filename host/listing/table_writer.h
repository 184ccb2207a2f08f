#pragma once

#include "host/listing/writer.h"

#include <cstddef>
#include <vector>

namespace listing
{

/// A table for people, in 80 columns where the cells allow it. Widths are settled by the first
/// rows; a block behind them that needs more room widens the columns from there on.
class TableWriter final : public Writer
{
public:
    explicit TableWriter(const Shape& shape);

    void Add(const Record& record) override;
    void Finish(const std::string& nextPage) override;
    void Fail(const std::string& message, int status) override;
    bool HasBegun() const override { return m_hasBegun; }

private:
    void Widen(const std::vector<std::string>& cells);
    void PrintBlock();
    std::string Line(const std::vector<std::string>& cells) const;

    const Shape& m_shape;
    std::vector<std::size_t> m_widths;
    std::vector<TableRow> m_block;
    bool m_hasBegun = false;
};

} // namespace listing
