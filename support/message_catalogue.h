#pragma once

#include <cstddef>

namespace support
{

// A template takes its arguments in their listed order, one placeholder after the other:
//   %H  a holder: two names and a certificate, "Ruiz Ana/ANA RUIZ"
//   %A  an amount and its currency
//   %T  one text
// A part in [ ] is left out when its placeholder is empty.
inline constexpr wchar_t kHolderPlaceholder = L'H';
inline constexpr wchar_t kAmountPlaceholder = L'A';

struct CatalogueEntry
{
    unsigned int number;
    const wchar_t* english;
    const wchar_t* french;
};

extern const CatalogueEntry kCatalogue[];
extern const std::size_t kCatalogueSize;

/// Numbers of the catalogue's range that nothing uses so far.
bool IsReservedNumber(unsigned int number) noexcept;

/// Texts for numbers without an entry, by language; both take the number.
inline constexpr const wchar_t* kReservedMessage[] = {L"Reserved message %u",
                                                      L"Message r\u00E9serv\u00E9 %u"};
inline constexpr const wchar_t* kUnknownMessage[] = {L"Unknown message %u", L"Message inconnu %u"};

} // namespace support
