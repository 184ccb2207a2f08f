#include "database/statement_words.h"

#include <algorithm>
#include <utility>

namespace database
{

namespace
{

// Words that begin a statement and cannot stand inside one of the four without brackets.
constexpr std::wstring_view kBeginnings[] = {
    L"INSERT",    L"UPDATE",     L"DELETE",      L"MERGE",      L"TRUNCATE",   L"CREATE",
    L"ALTER",     L"DROP",       L"EXEC",        L"EXECUTE",    L"GRANT",      L"REVOKE",
    L"DENY",      L"DECLARE",    L"USE",         L"SHUTDOWN",   L"BACKUP",     L"RESTORE",
    L"KILL",      L"WAITFOR",    L"PRINT",       L"IF",         L"WHILE",      L"BEGIN",
    L"COMMIT",    L"ROLLBACK",   L"SAVE",        L"DBCC",       L"BULK",       L"OPEN",
    L"CLOSE",     L"FETCH",      L"RETURN",      L"GOTO",       L"THROW",      L"RAISERROR",
    L"REVERT",    L"SETUSER",    L"WITH",        L"CHECKPOINT", L"DEALLOCATE", L"READTEXT",
    L"WRITETEXT", L"UPDATETEXT", L"RECONFIGURE",
};

bool IsDigit(wchar_t character)
{
    return character >= L'0' && character <= L'9';
}

/// A number may end inside the word ("1DROP" are two), and letters beyond ASCII include blanks.
bool MayHideAnother(std::wstring_view word)
{
    const bool number = IsDigit(word.front()) || word.front() == L'$';
    return (number && !std::all_of(word.begin(), word.end(), IsDigit)) ||
           std::any_of(word.begin(), word.end(), [](wchar_t each) { return each >= 0x80; });
}

bool IsCombination(std::wstring_view word)
{
    return word == L"UNION" || word == L"EXCEPT" || word == L"INTERSECT";
}

} // namespace

bool StatementWords::Continues(std::wstring_view word, bool afterParenthesis)
{
    if (std::exchange(m_first, false))
    {
        m_insert = word == L"INSERT";
        m_update = word == L"UPDATE";
        return true;
    }
    if (MayHideAnother(word))
    {
        return false;
    }
    if (word == L"SELECT")
    {
        return SelectContinues(afterParenthesis);
    }
    m_combination = IsCombination(word) || (m_combination && word == L"ALL");
    if (word == L"VALUES")
    {
        return std::exchange(m_insert, false);
    }
    if (word == L"SET")
    {
        return std::exchange(m_update, false);
    }
    if (word == L"INTO")
    {
        return m_insert;
    }
    return std::find(std::begin(kBeginnings), std::end(kBeginnings), word) == std::end(kBeginnings);
}

bool StatementWords::SelectContinues(bool afterParenthesis)
{
    const bool fillsInsert = std::exchange(m_insert, false);
    return std::exchange(m_combination, false) || afterParenthesis || fillsInsert;
}

} // namespace database
