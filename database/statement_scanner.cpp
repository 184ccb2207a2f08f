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
    return (upper >= L'A' && upper <= L'Z') || (upper >= L'0' && upper <= L':') || upper == L'_' ||
           upper == L'$' || upper == L'@' || upper == L'#' || character >= 0x80;
}

/// The characters at which anything may begin; all others are passed over.
class Beginnings
{
public:
    Beginnings(const LexicalRules& rules, bool words)
    {
        Add(L";'\"-/");
        Add(rules.doubtful);
        Add(rules.backtickQuotes ? L"`" : L"");
        Add(rules.bracketQuotes || rules.doubledBrackets ? L"[" : L"");
        Add(rules.dropsNationalPrefix ? L"Nn" : L"");
        Add(rules.rewritesNow ? L"{" : L"");
        for (std::size_t each = 0; words && each < std::size(m_marks); ++each)
        {
            if (IsNameCharacter(static_cast<wchar_t>(each)))
            {
                m_marks[each] = 1;
            }
        }
    }

    /// Where the next one stands from `at` on, or the end of the text.
    std::size_t Next(std::wstring_view text, std::size_t at) const noexcept
    {
        // Four at a time: this is where a statement's characters are looked at one by one.
        while (text.size() - at >= 4 &&
               Has(text[at]) + Has(text[at + 1]) + Has(text[at + 2]) + Has(text[at + 3]) == 0)
        {
            at += 4;
        }
        while (at < text.size() && Has(text[at]) == 0)
        {
            ++at;
        }
        return at;
    }

private:
    unsigned Has(wchar_t character) const noexcept
    {
        return m_marks[std::min<char32_t>(static_cast<char32_t>(character), kOther)];
    }

    void Add(const wchar_t* marks)
    {
        for (; *marks != L'\0'; ++marks)
        {
            m_marks[static_cast<char32_t>(*marks)] = 1;
        }
    }

    static constexpr char32_t kOther = 0x80; // stands for all beyond ASCII

    unsigned char m_marks[kOther + 1] = {}; // 0 or 1
};

class Scanner
{
public:
    Scanner(std::wstring_view source, const LexicalRules& rules, ScannedStatement& result)
        : m_source(source), m_rules(rules), m_result(result)
    {
        m_result.text.clear();
        m_result.single = true;
        m_result.plainData = BeginsWithPlainWord();
        m_watchesWords = m_rules.bareStatements && m_result.plainData;
    }

    void Run()
    {
        const Beginnings beginnings(m_rules, m_watchesWords);
        m_at = beginnings.Next(m_source, 0);
        while (m_at < m_source.size() && !m_done)
        {
            Step();
            m_at = beginnings.Next(m_source, m_at);
        }
        Write({});
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
            PassLiteral();
        }
        else if (here == L'"' || (here == L'`' && m_rules.backtickQuotes))
        {
            PassTo(EndOfQuoted(here));
        }
        else if (here == L'[' && m_rules.bracketQuotes)
        {
            PassTo(EndOf(L"]", m_at + 1));
        }
        else if (here == L'[' && m_rules.doubledBrackets)
        {
            PassTo(EndOfQuoted(L']'));
        }
        else if (PairStands(L'-', L'-'))
        {
            PassComment(L"\n");
        }
        else if (PairStands(L'/', L'*'))
        {
            PassComment(L"*/");
        }
        else if (std::wstring_view(m_rules.doubtful).find(here) != std::wstring_view::npos)
        {
            FinishInDoubt();
        }
        else if (m_watchesWords && IsNameCharacter(here))
        {
            PassWord();
        }
        else if (!Rewrite(here))
        {
            PassTo(m_at + 1);
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
        Write(m_at > 0 && m_source[m_at - 1] == L'\'' ? L" " : L"");
        m_unwritten = ++m_at;
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
        Write(L"datetime('now','localtime')");
        m_unwritten = m_at = at;
        return true;
    }

    void PassLiteral()
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
        PassTo(end);
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

    void PassWord()
    {
        std::size_t end = m_at;
        std::wstring word;
        while (end < m_source.size() && IsNameCharacter(m_source[end]))
        {
            word += AsciiUpper(m_source[end]);
            ++end;
        }
        const bool parenthesis = PreviousMark() == L'(';
        PassTo(end);
        if (!m_words.Continues(word, parenthesis))
        {
            Refuse();
        }
    }

    void Refuse()
    {
        m_result.single = false;
        PassTo(m_source.size());
        m_done = true;
    }

    void PassComment(std::wstring_view end)
    {
        if (m_rules.knowsComments)
        {
            PassTo(EndOf(end, m_at + 2));
        }
        else
        {
            FinishInDoubt();
        }
    }

    void FinishAtSemicolon()
    {
        m_result.single = SkipBlanks(m_at + 1) == m_source.size();
        PassTo(m_source.size());
        m_done = true;
    }

    void FinishInDoubt()
    {
        const std::size_t semicolon = m_source.find(L';', m_at);
        m_result.single = !m_watchesWords && (semicolon == std::wstring_view::npos ||
                                              SkipBlanks(semicolon + 1) == m_source.size());
        PassTo(m_source.size());
        m_done = true;
    }

    bool BeginsWithPlainWord() const
    {
        const std::size_t start = SkipBlanks(0);
        static constexpr std::wstring_view kWords[] = {L"SELECT", L"INSERT", L"UPDATE", L"DELETE"};
        for (const std::wstring_view word : kWords)
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
        std::size_t at = m_source.find(quote, m_at + 1);
        while (at != std::wstring_view::npos && at + 1 < m_source.size() &&
               m_source[at + 1] == quote)
        {
            at = m_source.find(quote, at + 2);
        }
        return at == std::wstring_view::npos ? m_source.size() : at + 1;
    }

    /// What is passed stays as it is.
    void PassTo(std::size_t end) { m_at = end; }

    /// Writes what was passed, and then a text of the product's own.
    void Write(std::wstring_view text)
    {
        m_result.text.append(m_source, m_unwritten, m_at - m_unwritten).append(text);
        m_unwritten = m_at;
    }

    std::wstring_view m_source;
    const LexicalRules& m_rules;
    ScannedStatement& m_result;
    StatementWords m_words;
    std::size_t m_at = 0;
    std::size_t m_unwritten = 0; // from here up to m_at is passed and not yet written
    bool m_watchesWords = false;
    bool m_done = false;
};

} // namespace

void ScanStatement(std::wstring_view statement, const LexicalRules& rules, ScannedStatement& result)
{
    Scanner(statement, rules, result).Run();
}

ScannedStatement ScanStatement(std::wstring_view statement, const LexicalRules& rules)
{
    ScannedStatement result;
    ScanStatement(statement, rules, result);
    return result;
}

} // namespace database
