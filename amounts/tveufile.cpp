#include "amounts/tveufile.h"

#include "port/profile.h"
#include "support/casefold.h"
#include "support/checked_copy.h"
#include "support/folders.h"
#include "support/format.h"
#include "support/numbers.h"
#include "support/oem.h"

#include <memory>
#include <string>
#include <string_view>

using amounts::ColumnDetails;
using amounts::kColumnNotFound;
using amounts::kConstant;
using amounts::kMultiColumn;
using amounts::OrderColumns;
using amounts::RemittanceColumns;

namespace
{

constexpr int kGrowBy = 128;
constexpr DWORD kValueSize = 4096;
constexpr std::size_t kSpecificationSize = 256;
constexpr std::size_t kLabelSize = 256;
constexpr const char* kProfileName = "CtlVEU.INI";
constexpr const char* kDefaultCountry = "FR";
constexpr const char* kAccountKey = "rem_AccountNumberOrig";
constexpr const char* kCountryKey = "rem_Country";

// One key of a section: a column or a switch of its record.
template <typename Record>
struct Key
{
    const char* name;
    int Record::*column;
    bool Record::*flag;
};

constexpr Key<RemittanceColumns> kRemittanceKeys[] = {
    {"all_IsCredit", nullptr, &RemittanceColumns::isCredit},
    // Spelt as profile files in use spell it.
    {"rem_DateExecuction", &RemittanceColumns::executionDate, nullptr},
    {kAccountKey, &RemittanceColumns::accountNumber, nullptr},
    {"rem_isBankCodeBICOrig", nullptr, &RemittanceColumns::isBankCodeBic},
    {"rem_isAccountIBANOrig", nullptr, &RemittanceColumns::isAccountIban},
    {"rem_BankCodeOrig", &RemittanceColumns::bankCode, nullptr},
    {"rem_ReferenceRemise", &RemittanceColumns::reference, nullptr},
    {"rem_OrderParty", &RemittanceColumns::orderParty, nullptr},
    {"rem_Emetteur", &RemittanceColumns::sender, nullptr},
    {kCountryKey, &RemittanceColumns::country, nullptr},
};

constexpr Key<OrderColumns> kOrderKeys[] = {
    {"cp_isAmountCredit", nullptr, &OrderColumns::isAmountCredit},
    {"cp_Amount", &OrderColumns::amount, nullptr},
    {"cp_AmountCurrency", &OrderColumns::amountCurrency, nullptr},
    {"cp_DateExec", &OrderColumns::executionDate, nullptr},
    {"cp_isBankCodeBICOrig", nullptr, &OrderColumns::isBankCodeBicOrig},
    {"cp_isAccountIBANOrig", nullptr, &OrderColumns::isAccountIbanOrig},
    {"cp_BankCodeOrig", &OrderColumns::bankCodeOrig, nullptr},
    {"cp_AccountCurrencyOrig", &OrderColumns::accountCurrencyOrig, nullptr},
    {"cp_AccountNumberOrig", &OrderColumns::accountNumberOrig, nullptr},
    {"cp_AccountHolderOrig", &OrderColumns::accountHolderOrig, nullptr},
    {"cp_isBankCodeBICRecip", nullptr, &OrderColumns::isBankCodeBicRecip},
    {"cp_isAccountIBANRecip", nullptr, &OrderColumns::isAccountIbanRecip},
    {"cp_BankCodeRecip", &OrderColumns::bankCodeRecip, nullptr},
    {"cp_AccountCurrencyRecip", &OrderColumns::accountCurrencyRecip, nullptr},
    {"cp_AccountNumberRecip", &OrderColumns::accountNumberRecip, nullptr},
    {"cp_AccountHolderRecip", &OrderColumns::accountHolderRecip, nullptr},
    {"cp_Libelle", &OrderColumns::label, nullptr},
};

// Empty for a key that is missing.
std::string ReadValue(const char* profile, const char* section, const char* key,
                      const char* defaultValue = nullptr)
{
    char value[kValueSize];
    const DWORD length =
        GetPrivateProfileStringA(section, key, defaultValue, value, kValueSize, profile);
    return std::string(value, length);
}

bool ReadSwitch(const char* profile, const char* section, const char* key)
{
    const std::string value = ReadValue(profile, section, key);
    return value.empty() || value.front() == 'T';
}

int TellNotFound(const char* specification)
{
    printfCharToOem(support::FormatA("\nError INI : col %-16s not found", specification).c_str());
    return kColumnNotFound;
}

} // namespace

TVeuFile::TVeuFile(const char* path, int oneLineHeader)
    : TDelimitedFile(path, oneLineHeader), m_displayItems(kGrowBy), m_columns(kGrowBy)
{
    const std::string profile = DoLoadPath() + kProfileName;
    if (profile.size() < m_profilePath.size())
    {
        support::TruncatingCopy(m_profilePath.data(), m_profilePath.size(), profile.c_str());
    }
}

TVeuFile::~TVeuFile()
{
    RemoveDisplayItems();
}

void TVeuFile::RemoveDisplayItems() noexcept
{
    for (int i = 0; i < m_displayItems.GetCount(); ++i)
    {
        const std::unique_ptr<displayItem> gone(*m_displayItems.GetAt(i));
    }
    m_displayItems.RemoveAll();
}

bool TVeuFile::HasSection(const char* section) const
{
    char lines[kValueSize];
    return m_profilePath.front() != '\0' &&
           GetPrivateProfileSectionA(section, lines, kValueSize, m_profilePath.data()) > 0;
}

int TVeuFile::ReadColumn(const char* section, const char* key, const char* defaultValue,
                         const ColumnDetails& details) const
{
    const std::string value = ReadValue(m_profilePath.data(), section, key, defaultValue);
    return value.empty() ? kColumnNotFound : ResolveColumn(value.c_str(), details);
}

int TVeuFile::LoadRemittanceSection(const char* section)
{
    if (!HasSection(section))
    {
        return 0;
    }
    m_columns.RemoveAll();
    m_accountIsMultiColumn = false;
    m_accountIsRib = false;
    m_country.fill('\0');
    for (const Key<RemittanceColumns>& key : kRemittanceKeys)
    {
        if (key.flag != nullptr)
        {
            m_remittance.*key.flag = ReadSwitch(m_profilePath.data(), section, key.name);
            continue;
        }
        ColumnDetails details;
        const char* defaultValue = nullptr;
        if (key.name == kAccountKey)
        {
            details = {&m_accountIsMultiColumn, &m_columns, &m_accountIsRib, nullptr, 0};
        }
        else if (key.name == kCountryKey)
        {
            // The default is resolved like a written value and so is told as not found, on purpose.
            defaultValue = kDefaultCountry;
            details.constant = m_country.data();
            details.constantSize = m_country.size();
        }
        m_remittance.*key.column = ReadColumn(section, key.name, defaultValue, details);
    }
    return 0;
}

int TVeuFile::LoadOrderSection(const char* section)
{
    if (!HasSection(section))
    {
        return 0;
    }
    for (const Key<OrderColumns>& key : kOrderKeys)
    {
        if (key.flag != nullptr)
        {
            m_order.*key.flag = ReadSwitch(m_profilePath.data(), section, key.name);
        }
        else
        {
            m_order.*key.column = ReadColumn(section, key.name, nullptr, {});
        }
    }
    return 0;
}

int TVeuFile::LoadDisplaySection(const char* section)
{
    if (!HasSection(section))
    {
        return 0;
    }
    const char* const profile = m_profilePath.data();
    RemoveDisplayItems();
    m_displayHeader = ReadValue(profile, section, "rem_DisplayHeader").c_str();
    m_displayHeadCount = support::ToInt32(ReadValue(profile, section, "rem_DisplayHeadNB").c_str());
    for (int number = 1; AddDisplayItem(section, number); ++number)
    {
    }
    return 0;
}

// False when there is no column of that number.
bool TVeuFile::AddDisplayItem(const char* section, int number)
{
    const std::string key = support::FormatA("rem_DisplayCol%.02d", number);
    const std::string value = ReadValue(m_profilePath.data(), section, key.c_str());
    if (value.empty())
    {
        return false;
    }
    auto item = std::make_unique<displayItem>();
    ColumnDetails details;
    details.columns = &item->columns;
    item->column = ResolveColumn(value.c_str(), details);
    if (item->column >= 0 && item->column < GetFirstHeader().GetCount())
    {
        item->columns.Add(item->column);
    }
    item->label = ReadLabel(section, number);
    m_displayItems.Add(item.get());
    static_cast<void>(item.release()); // the array holds it now
    return true;
}

TSimpleString TVeuFile::ReadLabel(const char* section, int number) const
{
    const std::string key = support::FormatA("rem_DisplayLib%.02d", number);
    TArray<int> columns(kGrowBy);
    char constant[kLabelSize] = {};
    ColumnDetails details;
    details.columns = &columns;
    details.constant = constant;
    details.constantSize = kLabelSize;
    const int column = ReadColumn(section, key.c_str(), nullptr, details);
    if (column == kConstant)
    {
        return constant;
    }
    if (column >= 0 && column < GetFirstHeader().GetCount())
    {
        columns.Add(column);
    }
    return HeaderNames(columns);
}

// The names joined by blanks.
TSimpleString TVeuFile::HeaderNames(const TArray<int>& columns) const
{
    TSimpleString names;
    for (int i = 0; i < columns.GetCount(); ++i)
    {
        names += names.IsEmpty() ? "" : " ";
        names += *GetFirstHeader().GetAt(*columns.GetAt(i));
    }
    return names;
}

int TVeuFile::ResolveColumn(const char* specification, const ColumnDetails& details) const
{
    char text[kSpecificationSize];
    support::TruncatingCopy(text, kSpecificationSize, specification);
    if (std::string_view(text).find(',') == std::string_view::npos)
    {
        return ResolveOne(text, details);
    }
    if (details.multiColumn != nullptr)
    {
        *details.multiColumn = true;
    }
    ResolveList(text, details);
    return kMultiColumn;
}

int TVeuFile::ResolveOne(const char* specification, const ColumnDetails& details) const
{
    switch (*specification)
    {
    case '$':
        if (const int column = FindHeader(specification + 1); column != kColumnNotFound)
        {
            return column;
        }
        break;
    case '~':
        if (details.constant != nullptr)
        {
            support::TruncatingCopy(details.constant, details.constantSize, specification + 1);
        }
        return kConstant;
    case '#':
        if (const int code = ResolveSpecialWord(specification, details); code != kColumnNotFound)
        {
            return code;
        }
        break;
    case '-':
        return amounts::kNoColumn;
    default:
        break;
    }
    return TellNotFound(specification);
}

// "#RIB" sets its flag and is told as not found all the same, on purpose.
int TVeuFile::ResolveSpecialWord(const char* specification, const ColumnDetails& details) const
{
    const std::string_view word = specification;
    if (support::EqualIgnoringAsciiCase(specification, "#RIB") && details.rib != nullptr)
    {
        *details.rib = true;
    }
    if (word == "#NbOrders")
    {
        return amounts::kOrderCount;
    }
    return word == "#TotalCurrency" ? amounts::kTotalCurrency : kColumnNotFound;
}

// Pieces that do not start with '$' have no meaning in a list.
void TVeuFile::ResolveList(const char* specification, const ColumnDetails& details) const
{
    std::string_view rest = specification;
    while (!rest.empty())
    {
        const std::size_t end = rest.find(',');
        const std::string piece(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1U);
        if (piece.empty() || piece.front() != '$')
        {
            continue;
        }
        const int column = ResolveOne(piece.c_str(), {});
        if (column != kColumnNotFound && details.columns != nullptr)
        {
            details.columns->Add(column);
        }
    }
}

// A name that stands twice is its last column.
int TVeuFile::FindHeader(const char* name) const
{
    int column = GetFirstHeader().GetCount() - 1;
    while (column >= 0 && !(*GetFirstHeader().GetAt(column) == name))
    {
        --column;
    }
    return column;
}
