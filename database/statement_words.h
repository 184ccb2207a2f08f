#pragma once

#include <string_view>

namespace database
{

/// Follows the words of one SELECT, INSERT, UPDATE or DELETE on a product that runs a second
/// statement without a semicolon before it.
class StatementWords
{
public:
    /// False when the word would begin another statement, or may hide one. `word` is in capitals;
    /// `afterParenthesis` when it stands directly behind an opening one.
    bool Continues(std::wstring_view word, bool afterParenthesis);

private:
    bool SelectContinues(bool afterParenthesis);

    bool m_first = true;
    bool m_insert = false;      // an INSERT that has not yet said where its rows come from
    bool m_update = false;      // an UPDATE that still waits for its SET
    bool m_combination = false; // UNION, EXCEPT, INTERSECT, or ALL behind one, came just before
};

} // namespace database
