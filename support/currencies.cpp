#include "support/currencies.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace
{

constexpr std::uint16_t kNoDecimals = 0xFFFF;

// Both tables are in the order of their codes.

constexpr CurrencyInfo kActive[] = {
    {"AED", "784", 2, false},           {"AFN", "971", 2, false},
    {"ALL", "008", 2, false},           {"AMD", "051", 2, false},
    {"AOA", "973", 2, false},           {"ARS", "032", 2, false},
    {"AUD", "036", 2, false},           {"AWG", "533", 2, false},
    {"AZN", "944", 2, false},           {"BAM", "977", 2, false},
    {"BBD", "052", 2, false},           {"BDT", "050", 2, false},
    {"BHD", "048", 3, false},           {"BIF", "108", 0, false},
    {"BMD", "060", 2, false},           {"BND", "096", 2, false},
    {"BOB", "068", 2, false},           {"BOV", "984", 2, false},
    {"BRL", "986", 2, false},           {"BSD", "044", 2, false},
    {"BTN", "064", 2, false},           {"BWP", "072", 2, false},
    {"BYN", "933", 2, false},           {"BZD", "084", 2, false},
    {"CAD", "124", 2, false},           {"CDF", "976", 2, false},
    {"CHE", "947", 2, false},           {"CHF", "756", 2, false},
    {"CHW", "948", 2, false},           {"CLF", "990", 4, false},
    {"CLP", "152", 0, false},           {"CNY", "156", 2, false},
    {"COP", "170", 2, false},           {"COU", "970", 2, false},
    {"CRC", "188", 2, false},           {"CUP", "192", 2, false},
    {"CVE", "132", 2, false},           {"CZK", "203", 2, false},
    {"DJF", "262", 0, false},           {"DKK", "208", 2, false},
    {"DOP", "214", 2, false},           {"DZD", "012", 2, false},
    {"EGP", "818", 2, false},           {"ERN", "232", 2, false},
    {"ETB", "230", 2, false},           {"EUR", "978", 2, false},
    {"FJD", "242", 2, false},           {"FKP", "238", 2, false},
    {"GBP", "826", 2, false},           {"GEL", "981", 2, false},
    {"GHS", "936", 2, false},           {"GIP", "292", 2, false},
    {"GMD", "270", 2, false},           {"GNF", "324", 0, false},
    {"GTQ", "320", 2, false},           {"GYD", "328", 2, false},
    {"HKD", "344", 2, false},           {"HNL", "340", 2, false},
    {"HTG", "332", 2, false},           {"HUF", "348", 2, false},
    {"IDR", "360", 2, false},           {"ILS", "376", 2, false},
    {"INR", "356", 2, false},           {"IQD", "368", 3, false},
    {"IRR", "364", 2, false},           {"ISK", "352", 0, false},
    {"JMD", "388", 2, false},           {"JOD", "400", 3, false},
    {"JPY", "392", 0, false},           {"KES", "404", 2, false},
    {"KGS", "417", 2, false},           {"KHR", "116", 2, false},
    {"KMF", "174", 0, false},           {"KPW", "408", 2, false},
    {"KRW", "410", 0, false},           {"KWD", "414", 3, false},
    {"KYD", "136", 2, false},           {"KZT", "398", 2, false},
    {"LAK", "418", 2, false},           {"LBP", "422", 2, false},
    {"LKR", "144", 2, false},           {"LRD", "430", 2, false},
    {"LSL", "426", 2, false},           {"LYD", "434", 3, false},
    {"MAD", "504", 2, false},           {"MDL", "498", 2, false},
    {"MGA", "969", 2, false},           {"MKD", "807", 2, false},
    {"MMK", "104", 2, false},           {"MNT", "496", 2, false},
    {"MOP", "446", 2, false},           {"MRU", "929", 2, false},
    {"MUR", "480", 2, false},           {"MVR", "462", 2, false},
    {"MWK", "454", 2, false},           {"MXN", "484", 2, false},
    {"MXV", "979", 2, false},           {"MYR", "458", 2, false},
    {"MZN", "943", 2, false},           {"NAD", "516", 2, false},
    {"NGN", "566", 2, false},           {"NIO", "558", 2, false},
    {"NOK", "578", 2, false},           {"NPR", "524", 2, false},
    {"NZD", "554", 2, false},           {"OMR", "512", 3, false},
    {"PAB", "590", 2, false},           {"PEN", "604", 2, false},
    {"PGK", "598", 2, false},           {"PHP", "608", 2, false},
    {"PKR", "586", 2, false},           {"PLN", "985", 2, false},
    {"PYG", "600", 0, false},           {"QAR", "634", 2, false},
    {"RON", "946", 2, false},           {"RSD", "941", 2, false},
    {"RUB", "643", 2, false},           {"RWF", "646", 0, false},
    {"SAR", "682", 2, false},           {"SBD", "090", 2, false},
    {"SCR", "690", 2, false},           {"SDG", "938", 2, false},
    {"SEK", "752", 2, false},           {"SGD", "702", 2, false},
    {"SHP", "654", 2, false},           {"SLE", "925", 2, false},
    {"SOS", "706", 2, false},           {"SRD", "968", 2, false},
    {"SSP", "728", 2, false},           {"STN", "930", 2, false},
    {"SVC", "222", 2, false},           {"SYP", "760", 2, false},
    {"SZL", "748", 2, false},           {"THB", "764", 2, false},
    {"TJS", "972", 2, false},           {"TMT", "934", 2, false},
    {"TND", "788", 3, false},           {"TOP", "776", 2, false},
    {"TRY", "949", 2, false},           {"TTD", "780", 2, false},
    {"TWD", "901", 2, false},           {"TZS", "834", 2, false},
    {"UAH", "980", 2, false},           {"UGX", "800", 0, false},
    {"USD", "840", 2, false},           {"USN", "997", 2, false},
    {"UYI", "940", 0, false},           {"UYU", "858", 2, false},
    {"UYW", "927", 4, false},           {"UZS", "860", 2, false},
    {"VED", "926", 2, false},           {"VES", "928", 2, false},
    {"VND", "704", 0, false},           {"VUV", "548", 0, false},
    {"WST", "882", 2, false},           {"XAD", "396", 2, false},
    {"XAF", "950", 0, false},           {"XAG", "961", kNoDecimals, false},
    {"XAU", "959", kNoDecimals, false}, {"XBA", "955", kNoDecimals, false},
    {"XBB", "956", kNoDecimals, false}, {"XBC", "957", kNoDecimals, false},
    {"XBD", "958", kNoDecimals, false}, {"XCD", "951", 2, false},
    {"XCG", "532", 2, false},           {"XDR", "960", kNoDecimals, false},
    {"XOF", "952", 0, false},           {"XPD", "964", kNoDecimals, false},
    {"XPF", "953", 0, false},           {"XPT", "962", kNoDecimals, false},
    {"XSU", "994", kNoDecimals, false}, {"XTS", "963", kNoDecimals, false},
    {"XUA", "965", kNoDecimals, false}, {"XXX", "999", kNoDecimals, false},
    {"YER", "886", 2, false},           {"ZAR", "710", 2, false},
    {"ZMW", "967", 2, false},           {"ZWG", "924", 2, false}};

constexpr CurrencyInfo kWithdrawn[] = {
    {"ADP", "020", 0, true}, {"AFA", "004", 2, true}, {"ANG", "532", 2, true},
    {"ATS", "040", 2, true}, {"AZM", "031", 2, true}, {"BEF", "056", 0, true},
    {"BGL", "100", 2, true}, {"BGN", "975", 2, true}, {"BYR", "974", 0, true},
    {"CSD", "891", 2, true}, {"CUC", "931", 2, true}, {"CYP", "196", 2, true},
    {"DEM", "276", 2, true}, {"EEK", "233", 2, true}, {"ESP", "724", 0, true},
    {"FIM", "246", 2, true}, {"FRF", "250", 2, true}, {"GHC", "288", 2, true},
    {"GRD", "300", 0, true}, {"HRK", "191", 2, true}, {"IEP", "372", 2, true},
    {"ITL", "380", 0, true}, {"LTL", "440", 2, true}, {"LUF", "442", 0, true},
    {"LVL", "428", 2, true}, {"MGF", "450", 0, true}, {"MRO", "478", 2, true},
    {"MTL", "470", 2, true}, {"MZM", "508", 2, true}, {"NLG", "528", 2, true},
    {"PLZ", "616", 2, true}, {"PTE", "620", 0, true}, {"ROL", "642", 2, true},
    {"RUR", "810", 2, true}, {"SDD", "736", 2, true}, {"SIT", "705", 2, true},
    {"SKK", "703", 2, true}, {"SLL", "694", 2, true}, {"SRG", "740", 2, true},
    {"STD", "678", 2, true}, {"TMM", "795", 2, true}, {"TPE", "626", 0, true},
    {"TRL", "792", 0, true}, {"VEB", "862", 2, true}, {"VEF", "937", 2, true},
    {"YUM", "891", 2, true}, {"ZMK", "894", 2, true}, {"ZWL", "932", 2, true}};

std::string_view CodeOf(const CurrencyInfo& currency) noexcept
{
    return {currency.code, sizeof currency.code - 1U};
}

bool ComesBefore(const CurrencyInfo& currency, std::string_view code) noexcept
{
    return CodeOf(currency) < code;
}

template <std::size_t Count>
const CurrencyInfo* FindIn(const CurrencyInfo (&table)[Count], std::string_view code) noexcept
{
    const CurrencyInfo* const found =
        std::lower_bound(std::begin(table), std::end(table), code, ComesBefore);
    return found != std::end(table) && CodeOf(*found) == code ? found : nullptr;
}

TResourceDevise g_currencies;

} // namespace

TResourceDevise* GlobalResourceDevise = &g_currencies;

std::uint16_t TResourceDevise::GetDecimals(const char* code, int /*reserved*/) const
{
    const CurrencyInfo* const currency = Find(code);
    return currency == nullptr ? kNoDecimals : currency->decimals;
}

const CurrencyInfo* TResourceDevise::Find(const char* code) const
{
    const std::string_view wanted = code == nullptr ? "" : code;
    const CurrencyInfo* const active = FindIn(kActive, wanted);
    return active != nullptr ? active : FindIn(kWithdrawn, wanted);
}
