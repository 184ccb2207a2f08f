// Letters whose small form is that of another letter: a certificate name with one of them is, in
// the comparison without regard to case, the name with the other. What comes of that on the product
// that SIGNUTILS_TEST_DB names, SQLite without it; docs/security.md tells the same in words.

#include "database/dialect.h"
#include "tests/rules/check_fixture.h"

#include <ostream>

namespace
{

using database::Product;
using testing_support::Contract;
using testing_support::Holder;

struct Crossing
{
    const char* name;
    wchar_t letter;        ///< of the certificate that is presented
    wchar_t small;         ///< its small form, which is another letter's too
    bool crossesOnMariaDb; ///< whose table of letters is older than some of them
};

void PrintTo(const Crossing& crossing, std::ostream* out)
{
    *out << crossing.name;
}

const Crossing kCrossings[] = {
    {"CapitalIWithDot", L'\u0130', L'i', true},
    {"KelvinSign", L'\u212A', L'k', true},
    {"AngstromSign", L'\u212B', L'\u00E5', true},
    {"OhmSign", L'\u2126', L'\u03C9', true},
    {"CapitalSharpS", L'\u1E9E', L'\u00DF', false},
    {"CapitalThetaSymbol", L'\u03F4', L'\u03B8', false},
    {"TitlecaseDZWithCaron", L'\u01C5', L'\u01C6', true},
};

class CrossingLetter : public testing_support::CheckTest,
                       public testing::WithParamInterface<Crossing>
{
protected:
    CrossingLetter()
    {
        bank.With(Holder(L"H9").Named(L"Max", L"Holder").Certificate(NameWith(GetParam().small)))
            .With(Contract(L"C1").AloneBy(L"H9"));
    }

    static std::wstring NameWith(wchar_t letter) { return L"Ma" + std::wstring(1, letter) + L" X"; }

    /// Whether LOWER of this product makes the letter the other one's small form. In the database
    /// of these tests; on PostgreSQL and SQL Server its locale or collation decides.
    bool Crosses() const
    {
        CDatabase database;
        database.OpenEx(tables.ConnexionString().c_str(), 0);
        switch (database.GetDialect().product)
        {
        case Product::PostgreSql:
            return true;
        case Product::MariaDb:
            return GetParam().crossesOnMariaDb;
        default:
            return false; // SQLite lowers ASCII alone
        }
    }
};

TEST_P(CrossingLetter, SignsForTheHolderWithTheOtherOneWhereTheDatabaseLowersItToo)
{
    const std::uint32_t verdict = Check(NameWith(GetParam().letter).c_str());

    EXPECT_EQ(verdict, Crosses() ? rules::kVerdictSuccess : rules::kVerdictNoRule);
    EXPECT_EQ(Column(L"CNS"), std::vector<std::wstring>{NameWith(GetParam().letter)})
        << "the record has the name as it was presented";
}

TEST_P(CrossingLetter, SignsForItsOwnHolderOnEveryProduct)
{
    bank.With(Holder(L"H8").Named(L"Own", L"Holder").Certificate(NameWith(GetParam().letter)))
        .With(Contract(L"C2").AloneBy(L"H8"));

    EXPECT_EQ(Check(NameWith(GetParam().letter).c_str()), rules::kVerdictSuccess);
}

INSTANTIATE_TEST_SUITE_P(Letters, CrossingLetter, testing::ValuesIn(kCrossings),
                         [](const auto& each) { return std::string(each.param.name); });

} // namespace
