#pragma once

#include "amounts/tdelimitedfile.h"

#include <array>
#include <cstddef>
#include <cstdint>

/// One column of the order display. A single column is a list of one.
struct displayItem
{
    TArray<int> columns{8};
    int column = -1; ///< column number or one of amounts::ColumnCode
    TSimpleString label;
};

namespace amounts
{

/// What a column specification may mean instead of a column number.
enum ColumnCode : int
{
    kColumnNotFound = -1,
    kMultiColumn = 9995,
    kNoColumn = 9996,
    kConstant = 9997,
    kOrderCount = 9998,
    kTotalCurrency = 9999,
};

/// Column numbers or codes of the remittance section, in the order of reading.
struct RemittanceColumns
{
    bool isCredit = true;
    int executionDate = kColumnNotFound;
    int accountNumber = kColumnNotFound;
    bool isBankCodeBic = true;
    bool isAccountIban = true;
    int bankCode = kColumnNotFound;
    int reference = kColumnNotFound;
    int orderParty = kColumnNotFound;
    int sender = kColumnNotFound;
    int country = kColumnNotFound;
};

/// Column numbers or codes of the order section, in the order of reading.
struct OrderColumns
{
    bool isAmountCredit = true;
    int amount = kColumnNotFound;
    int amountCurrency = kColumnNotFound;
    int executionDate = kColumnNotFound;
    bool isBankCodeBicOrig = true;
    bool isAccountIbanOrig = true;
    int bankCodeOrig = kColumnNotFound;
    int accountCurrencyOrig = kColumnNotFound;
    int accountNumberOrig = kColumnNotFound;
    int accountHolderOrig = kColumnNotFound;
    bool isBankCodeBicRecip = true;
    bool isAccountIbanRecip = true;
    int bankCodeRecip = kColumnNotFound;
    int accountCurrencyRecip = kColumnNotFound;
    int accountNumberRecip = kColumnNotFound;
    int accountHolderRecip = kColumnNotFound;
    int label = kColumnNotFound;
};

/// What resolving a column specification may give beside its result. Each may be null.
struct ColumnDetails
{
    bool* multiColumn = nullptr;
    TArray<int>* columns = nullptr; ///< of a multi-column specification
    bool* rib = nullptr;
    char* constant = nullptr;
    std::size_t constantSize = 0;
};

} // namespace amounts

/// A work file with the order display that the profile file "CtlVEU.INI" configures: which column,
/// by its header name, has which meaning. Nothing of the profile file is read at construction.
class TVeuFile : public TDelimitedFile
{
public:
    TVeuFile(const char* path, int oneLineHeader);
    ~TVeuFile() override;

    // Each loader reads one section and returns 0. A section that is missing or empty leaves
    // everything as it is; a key that is missing or empty gives its default. A column that cannot
    // be resolved is told on standard error and is -1.

    int LoadRemittanceSection(const char* section);
    int LoadOrderSection(const char* section);
    int LoadDisplaySection(const char* section);

    /// The column number that a specification stands for, or an amounts::ColumnCode. "$NAME" is
    /// the last header of that name, "~text" a constant, "-" no column; with a ',' it is a list.
    int ResolveColumn(const char* specification, const amounts::ColumnDetails& details) const;

    const amounts::RemittanceColumns& GetRemittanceColumns() const noexcept { return m_remittance; }
    const amounts::OrderColumns& GetOrderColumns() const noexcept { return m_order; }
    /// Columns of the remittance's account number when it is a list of several.
    const TArray<int>& GetAccountColumns() const noexcept { return m_columns; }
    bool IsAccountMultiColumn() const noexcept { return m_accountIsMultiColumn; }
    bool IsAccountRib() const noexcept { return m_accountIsRib; }
    /// The country when "rem_Country" is a constant, else empty.
    const char* GetCountry() const noexcept { return m_country.data(); }

    const TSimpleString& GetDisplayHeader() const noexcept { return m_displayHeader; }
    int GetDisplayHeadCount() const noexcept { return m_displayHeadCount; }
    const TArray<displayItem*>& GetDisplayItems() const noexcept { return m_displayItems; }

private:
    static constexpr std::size_t kCountrySize = 4;
    static constexpr std::size_t kPathSize = 260;

    bool HasSection(const char* section) const;
    int ReadColumn(const char* section, const char* key, const char* defaultValue,
                   const amounts::ColumnDetails& details) const;
    int ResolveOne(const char* specification, const amounts::ColumnDetails& details) const;
    int ResolveSpecialWord(const char* specification, const amounts::ColumnDetails& details) const;
    void ResolveList(const char* specification, const amounts::ColumnDetails& details) const;
    int FindHeader(const char* name) const;
    bool AddDisplayItem(const char* section, int number);
    TSimpleString ReadLabel(const char* section, int number) const;
    TSimpleString HeaderNames(const TArray<int>& columns) const;
    void RemoveDisplayItems() noexcept;

    TArray<displayItem*> m_displayItems; // owned
    TSimpleString m_displayHeader;
    int m_displayHeadCount = 0;
    TArray<int> m_columns;
    amounts::RemittanceColumns m_remittance;
    amounts::OrderColumns m_order;
    bool m_accountIsMultiColumn = false;
    bool m_accountIsRib = false;
    std::array<char, kCountrySize> m_country{};
    std::array<char, kPathSize> m_profilePath{}; // empty when it would not fit
};
