#pragma once

#include <string>
#include <string_view>

namespace database
{

/// How a product reads a statement's text, as far as the end of a statement hangs on it.
struct LexicalRules
{
    /// N'…' is written '…': the product has no such literal, or one of fewer letters.
    bool dropsNationalPrefix = false;
    /// {fn NOW()} is unknown to driver and product and written in the product's own form.
    bool rewritesNow = false;
    /// Comments are "--" up to LF and "/*" up to the next "*/". Elsewhere they are doubtful.
    bool knowsComments = false;
    bool backtickQuotes = false;  ///< `…` is a name, a doubled ` stands for one
    bool bracketQuotes = false;   ///< […] is a name that ends at the first ]
    bool doubledBrackets = false; ///< […] is a name, ]] stands for one ] in it
    /// A statement needs no semicolon before it: the words that begin one are looked for.
    bool bareStatements = false;
    /// A backslash in a literal may hide the quote behind it: where it stands before one, the
    /// literal's end is not known.
    bool backslashEscapes = false;
    /// A literal with E before it has backslash escapes.
    bool escapeLiterals = false;
    /// Characters of ASCII that, outside literals, begin what has no end known here.
    const wchar_t* doubtful = L"";
};

struct ScannedStatement
{
    std::wstring text; ///< in the product's own form
    /// Whether the text is proved to be one statement at most. From the first doubtful place on, a
    /// semicolon with anything behind it counts as a second statement, wherever it stands. Where
    /// statements need no semicolon, a plain data statement (see below) must also be free of doubt
    /// and of words that begin another; other statements come from no data and are not searched.
    bool single = true;
    /// Begins with SELECT, INSERT, UPDATE or DELETE: leaves no setting behind in the session.
    bool plainData = false;
};

ScannedStatement ScanStatement(std::wstring_view statement, const LexicalRules& rules);
/// As above, into a result that is used again with its memory.
void ScanStatement(std::wstring_view statement, const LexicalRules& rules,
                   ScannedStatement& result);

} // namespace database
