#include "benchmarks/null_driver/answers.h"

#include <cstring>
#include <iterator>

namespace null_driver
{

namespace
{

using Text = std::u16string_view;

// CUID, VPNAME, PROTOCOL, SERVER, VFNAME, VCNAME, TYPE, PROFILE, ALLHOLDERS, OPPOSITION, HUID1,
// HUID2, ALONE, AMOUNT, TLEVEL
constexpr Text kRule[] = {u"IBEREXPO-CCT-9", u"IBEREXPO", u"9", u"1",        u"CCT",
                          u"NOMINAS",        u"1",        u"1", u"0",        u"0",
                          u"FIRST",          u"SECOND",   u"0", u"75000000", u"0"};

// HUID, VPNAME, FNAME, LNAME, OPPOSITION, CN, SERIAL, EXPIRDATE
constexpr Text kFirst[] = {
    u"FIRST", u"IBEREXPO",     u"Mar\u00EDa Jos\u00E9", u"N\u00FA\u00F1ez Ib\u00E1\u00F1ez",
    u"0",     u"First Signer", u"5A0C33F19B",           u"2030-12-31"};
constexpr Text kSecond[] = {
    u"SECOND", u"IBEREXPO",      u"Andr\u00E9s", u"Mu\u00F1oz de la Pe\u00F1a",
    u"0",      u"Second Signer", u"5A0C33F19C",  u"2030-12-31"};
constexpr Text kOne[] = {u"1"};

constexpr Text kRules = u"SELECT C.CUID";
constexpr Text kCertificates = u"SELECT H.HUID, VPNAME, FNAME, LNAME, OPPOSITION, CN, SERIAL, "
                               u"EXPIRDATE FROM SSR_HOLDER H, SSR_HOLDERID I WHERE "
                               u"H.HUID=I.HUID AND H.HUID='";
constexpr Text kProbe = u"SELECT 1";

// By memory: a comparison of the library goes unit by unit, and the driver is to cost nothing.
bool Begins(Text text, Text with) noexcept
{
    return text.size() >= with.size() &&
           std::memcmp(text.data(), with.data(), with.size() * sizeof(char16_t)) == 0;
}

template <std::size_t Columns>
Answer Rows(const Text (&row)[Columns], std::size_t rows) noexcept
{
    return {{row, Columns}, rows};
}

} // namespace

Answer AnswerTo(Text statement, std::size_t rules) noexcept
{
    if (Begins(statement, kCertificates))
    {
        const Text holder = statement.substr(kCertificates.size());
        if (Begins(holder, u"FIRST'"))
        {
            return Rows(kFirst, 1);
        }
        return Begins(holder, u"SECOND'") ? Rows(kSecond, 1) : Answer();
    }
    if (Begins(statement, kRules))
    {
        return Rows(kRule, rules);
    }
    return Begins(statement, kProbe) ? Rows(kOne, 1) : Answer();
}

} // namespace null_driver
