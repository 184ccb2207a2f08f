// Any book comes back from its rule file to the last letter.

#include "host/rulebook/rule_file.h"
#include "host/rulebook/rule_file_writer.h"
#include "host/text.h"

#include <gtest/gtest.h>

#include <random>

namespace rulebook
{
namespace
{

/// Books of letters and numbers that files give a meaning to.
class RandomBooks
{
public:
    RuleBook Next()
    {
        RuleBook book;
        for (std::size_t count = Below(4); count > 0; --count)
        {
            book.holders.push_back(NextHolder());
        }
        for (std::size_t count = Below(4); count > 0; --count)
        {
            book.contracts.push_back(NextContract());
        }
        return book;
    }

private:
    std::size_t Below(std::size_t end) { return m_random() % end; }

    std::string Text()
    {
        constexpr char32_t kLetters[] = {U'a', U'"', U'\\',  U'\'',  U'\n',   U'\r',  U'\t',
                                         U' ', U'#', U'=',   U'[',   U'{',    U'\x1', U'\x7F',
                                         0x85, U'é', 0x202E, 0xFEFF, 0x20BB7, 0xFFFD, U'u',
                                         U'0', U'-', U':',   0x2028, 0xE000,  U'n',   U','};
        std::string text;
        for (std::size_t count = Below(6); count > 0; --count)
        {
            text += host::Utf8FromCodePoint(kLetters[Below(std::size(kLetters))]);
        }
        return text;
    }

    // What must say something says at least a letter.
    std::string Name() { return "N" + Text(); }

    std::optional<std::string> Optional()
    {
        return Below(3) == 0 ? std::nullopt : std::make_optional(Text());
    }

    std::int64_t Number()
    {
        constexpr std::int64_t kNumbers[] = {0, 1, 2, -1, 9, 2147483647, -2147483648LL};
        return kNumbers[Below(std::size(kNumbers))];
    }

    std::optional<std::int64_t> OptionalNumber()
    {
        return Below(3) == 0 ? std::nullopt : std::make_optional(Number());
    }

    ContractKey Key()
    {
        return {Below(2) == 0 ? "P" : Name(), Below(2) == 0 ? "S" : Name(), Name(),
                Below(2) == 0 ? 9 : Number(), Below(2) == 0 ? 1 : Number()};
    }

    Holder NextHolder()
    {
        Holder holder = {Name(), Optional(), Optional(), Optional(), Optional(), {}};
        for (std::size_t count = Below(3); count > 0; --count)
        {
            const std::string dates[] = {"2027-06-30", "0001-01-01", "0000-00-00", "soon", ""};
            holder.certificates.push_back({Name(), Optional(), dates[Below(std::size(dates))]});
        }
        return holder;
    }

    Contract NextContract()
    {
        Contract contract;
        contract.terms.push_back({Key(), Number(), OptionalNumber(), OptionalNumber(), Optional()});
        if (Below(6) == 0)
        {
            return contract; // it awaits its identifier
        }
        contract.cuid = Name();
        if (Below(2) == 0)
        {
            contract.entry = ContractEntry{Key(), OptionalNumber(), Optional()};
            if (Below(2) == 0)
            {
                contract.terms.clear();
            }
        }
        for (std::size_t count = Below(3); count > 0; --count)
        {
            contract.terms.push_back(
                {Key(), Number(), OptionalNumber(), OptionalNumber(), Optional()});
        }
        for (std::size_t count = Below(4); count > 0; --count)
        {
            contract.rules.push_back(
                {Optional(), Optional(), OptionalNumber(), Optional(), OptionalNumber()});
        }
        return contract;
    }

    std::mt19937 m_random{20271};
};

TEST(RuleFileRoundTrip, AnyBookComesBackFromItsFile)
{
    RandomBooks books;
    for (int count = 0; count < 1000; ++count)
    {
        const RuleBook book = books.Next();
        std::string file = RuleFileOpening();
        for (const Holder& holder : book.holders)
        {
            file += RuleFileTable(holder);
        }
        for (const Contract& contract : book.contracts)
        {
            file += RuleFileTable(contract);
        }
        Problems problems;

        const RuleFile read = ReadRuleFile(file, problems);

        ASSERT_EQ(problems.Errors(), 0U) << TextOf(problems.InOrder().front(), "file") << file;
        ASSERT_EQ(read.book, book) << file;
    }
}

} // namespace
} // namespace rulebook
