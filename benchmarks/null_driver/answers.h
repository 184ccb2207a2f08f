#pragma once

#include <cstddef>
#include <string_view>

namespace null_driver
{

/// Columns of one row, in the order of the statement.
struct Row
{
    const std::u16string_view* values;
    std::size_t count;
};

/// The same row some times.
struct Answer
{
    Row row;
    std::size_t rows;
};

/// What a statement of a check is answered: `rules` rule lines, each for the holders FIRST and
/// SECOND, who hold the certificates "First Signer" and "Second Signer", sign together and are
/// never over a limit; no rows for what is no query of a check.
Answer AnswerTo(std::u16string_view statement, std::size_t rules) noexcept;

} // namespace null_driver
