#include "database/statement_scanner.h"

#include "database/statement_words.h"

#include <algorithm>
#include <cstddef>

namespace database
{

namespace
{

bool IsBlank(wchar_t character) noexcept
{
    return character == L' ' || (character >= L'\t' && character <= L'\r');
}

wchar_t AsciiUpper(wchar_t character) noexcept
{
    return character >= L'a' && character <= L'z' ? static_cast<wchar_t>(character - L'a' + L'A')
                                                  : character;
}

/// Whether the character can stand in a name or a parameter's name, so that what follows is no
/// prefix of a literal.
bool IsNameCharacter(wchar_t character) noexcept
{
    const wchar_t upper = AsciiUpper(character);
    return (upper >= L'A' && upper <= L'Z') || (upper >= L'0' && upper <= L'9') ||
           std::wstring_view(L"_$@:#").find(upper) != std::wstring_view::npos || character >= 0x80;
}

class Scanner
{
public:
    Scanner(std::wstring_view source, const LexicalRules& rules) : m_source(source), m_rules(rules)
    {
        m_result.text.reserve(source.size() + 16);
    }

    ScannedStatement Run()
    {
        m_result.plainData = BeginsWithPlainWord();
        m_watchesWords = m_rules.bareStatements && m_result.plainData;
        while (m_at < m_source.size() && !m_done)
        {
            Step();
        }
        return std::move(m_result);
    }

private:
    void Step()
    {
        const wchar_t here = m_source[m_at];
        if (here == L';')
        {
            FinishAtSemicolon();
        }
        else if (here == L'\'')
        {
            CopyLiteral();
        }
        else if (here == L'"' || (here == L'`' && m_rules.backtickQuotes))
        {
            CopyTo(EndOfQuoted(here));
        }
        else if (here == L'[' && m_rules.bracketQuotes)
        {
            CopyTo(EndOf(L"]", m_at + 1));
        }
        else if (here == L'[' && m_rules.doubledBrackets)
        {
            CopyTo(EndOfQuoted(L']'));
        }
        else if (PairStands(L'-', L'-'))
        {
            CopyComment(L"\n");
        }
        else if (PairStands(L'/', L'*'))
        {
            CopyComment(L"*/");
        }
        else if (std::wstring_view(m_rules.doubtful).find(here) != std::wstring_view::npos)
        {
            FinishInDoubt();
        }
        else if (m_watchesWords && IsNameCharacter(here))
        {
            CopyWord();
        }
        else if (!Rewrite(here))
        {
            CopyTo(m_at + 1);
        }
    }

    /// Writes an ODBC form in the product's own; false when none stands here.
    bool Rewrite(wchar_t here)
    {
        if (here == L'{')
        {
            return m_rules.rewritesNow && RewriteNow();
        }
        const bool prefix = m_rules.dropsNationalPrefix && AsciiUpper(here) == L'N' &&
                            m_at + 1 < m_source.size() && m_source[m_at + 1] == L'\'' &&
                            !FollowsName();
        if (!prefix)
        {
            return false;
        }
        // A blank keeps the literal apart from one that ends here: together they would read as one
        // literal with a quote in it.
        if (m_at > 0 && m_source[m_at - 1] == L'\'')
        {
            m_result.text += L' ';
        }
        ++m_at;
        return true;
    }

    bool RewriteNow()
    {
        std::size_t at = m_at + 1;
        for (const std::wstring_view word : {L"FN", L"NOW", L"(", L")", L"}"})
        {
            at = SkipBlanks(at);
            if (!WordStands(at, word))
            {
                return false;
            }
            at += word.size();
        }
        m_result.text += L"datetime('now','localtime')";
        m_at = at;
        return true;
    }

    void CopyLiteral()
    {
        if (m_rules.escapeLiterals && m_at > 0 && AsciiUpper(m_source[m_at - 1]) == L'E')
        {
            FinishInDoubt();
            return;
        }
        const std::size_t end = EndOfQuoted(L'\'');
        const std::wstring_view literal = m_source.substr(m_at, end - m_at);
        if (m_rules.backslashEscapes && HidesAQuote(literal))
        {
            Refuse();
            return;
        }
        if (m_rules.backslashEscapes && literal.find(L'\\') != std::wstring_view::npos)
        {
            FinishInDoubt();
            return;
        }
        CopyTo(end);
    }

    /// Whether a quote of the literal, the closing one too, is data to whoever knows escapes.
    static bool HidesAQuote(std::wstring_view literal)
    {
        bool escapes = false;
        for (const wchar_t each : literal)
        {
            if (each == L'\'' && escapes)
            {
                return true;
            }
            escapes = each == L'\\' && !escapes;
        }
        return false;
    }

    void CopyWord()
    {
        std::size_t end = m_at;
        std::wstring word;
        while (end < m_source.size() && IsNameCharacter(m_source[end]))
        {
            word += AsciiUpper(m_source[end]);
            ++end;
        }
        const bool parenthesis = PreviousMark() == L'(';
        CopyTo(end);
        if (!m_words.Continues(word, parenthesis))
        {
            Refuse();
        }
    }

    void Refuse()
    {
        m_result.single = false;
        CopyTo(m_source.size());
        m_done = true;
    }

    void CopyComment(std::wstring_view end)
    {
        if (m_rules.knowsComments)
        {
            CopyTo(EndOf(end, m_at + 2));
        }
        else
        {
            FinishInDoubt();
        }
    }

    void FinishAtSemicolon()
    {
        m_result.single = SkipBlanks(m_at + 1) == m_source.size();
        CopyTo(m_source.size());
        m_done = true;
    }

    void FinishInDoubt()
    {
        const std::size_t semicolon = m_source.find(L';', m_at);
        m_result.single = !m_watchesWords && (semicolon == std::wstring_view::npos ||
                                              SkipBlanks(semicolon + 1) == m_source.size());
        CopyTo(m_source.size());
        m_done = true;
    }

    bool BeginsWithPlainWord() const
    {
        const std::size_t start = SkipBlanks(0);
        for (const std::wstring_view word : {L"SELECT", L"INSERT", L"UPDATE", L"DELETE"})
        {
            const std::size_t end = start + word.size();
            if (WordStands(start, word) &&
                (end == m_source.size() || !IsNameCharacter(m_source[end])))
            {
                return true;
            }
        }
        return false;
    }

    bool WordStands(std::size_t at, std::wstring_view word) const
    {
        const std::wstring_view found = m_source.substr(std::min(at, m_source.size()), word.size());
        return std::equal(word.begin(), word.end(), found.begin(), found.end(),
                          [](wchar_t expected, wchar_t each)
                          { return expected == AsciiUpper(each); });
    }

    bool PairStands(wchar_t first, wchar_t second) const
    {
        return m_source[m_at] == first && m_at + 1 < m_source.size() &&
               m_source[m_at + 1] == second;
    }

    bool FollowsName() const { return m_at > 0 && IsNameCharacter(m_source[m_at - 1]); }

    /// The last character before here that is no blank, 0 at the beginning.
    wchar_t PreviousMark() const
    {
        std::size_t at = m_at;
        while (at > 0 && IsBlank(m_source[at - 1]))
        {
            --at;
        }
        return at > 0 ? m_source[at - 1] : L'\0';
    }

    std::size_t SkipBlanks(std::size_t at) const
    {
        while (at < m_source.size() && IsBlank(m_source[at]))
        {
            ++at;
        }
        return at;
    }

    /// Behind the mark, or the end of the text where there is none.
    std::size_t EndOf(std::wstring_view mark, std::size_t from) const
    {
        const std::size_t found = m_source.find(mark, from);
        return found == std::wstring_view::npos ? m_source.size() : found + mark.size();
    }

    /// Behind the closing quote of what begins here; a doubled quote stands for one inside it.
    std::size_t EndOfQuoted(wchar_t quote) const
    {
        std::size_t at = m_at + 1;
        while (at < m_source.size())
        {
            if (m_source[at] != quote)
            {
                ++at;
            }
            else if (at + 1 < m_source.size() && m_source[at + 1] == quote)
            {
                at += 2;
            }
            else
            {
                return at + 1;
            }
        }
        return m_source.size();
    }

    void CopyTo(std::size_t end)
    {
        m_result.text.append(m_source.substr(m_at, end - m_at));
        m_at = end;
    }

    std::wstring_view m_source;
    const LexicalRules& m_rules;
    ScannedStatement m_result;
    StatementWords m_words;
    std::size_t m_at = 0;
    bool m_watchesWords = false;
    bool m_done = false;
};

} // namespace

ScannedStatement ScanStatement(std::wstring_view statement, const LexicalRules& rules)
{
    return Scanner(statement, rules).Run();
}

} // namespace database
