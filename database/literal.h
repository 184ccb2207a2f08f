#pragma once

#include <cstddef>
#include <cstdint>

namespace database
{

/// The cut of a text that its statement takes whole.
inline constexpr std::size_t kUncut = SIZE_MAX;

/// Raises CDBException* when a text that is to stand in a literal as it is would end that literal:
/// what follows would then be read as statement, and may make a valid one that asks or writes
/// something else. That is so when the text, cut to `cut` characters as the statement cuts it, has
/// a quote without a partner beside it. Quotes in pairs stand for one each and stay inside. Null
/// counts as empty. `what` names the text, `operation` what was about to be done.
void RequireWithinLiteral(const wchar_t* text, std::size_t cut, const char* what,
                          const char* operation);
/// The same for Windows-1252, of which each byte is one character of the statement.
void RequireWithinLiteral(const char* text, std::size_t cut, const char* what,
                          const char* operation);

} // namespace database
