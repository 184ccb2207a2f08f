#include "support/message_catalogue.h"

#include <algorithm>
#include <iterator>

namespace support
{

// The texts of 1800 to 1803, 1816 and 1820 to 1823 become reason fields of status reports, which
// take 105 characters: with names of 8 letters, certificates of 15 and amounts of 7 digits before
// the point they stay within them. That is why the two-holder texts are so short. French texts have
// letters of Windows-1252 only, since reports and mode names are narrow.
const CatalogueEntry kCatalogue[] = {
    {287, L"The format or the file name is missing", L"Le format ou le nom du fichier manque"},
    {355, L"Server", L"Serveur"},
    {356, L"Requester", L"Demandeur"},
    {1800, L"Holder in opposition[: %H][, total %A]",
     L"Titulaire en opposition[ : %H][, total %A]"},
    {1801, L"Total above the holder's limit[: %H][, total %A][, limit %A]",
     L"Total au-dessus de la limite[ : %H][, total %A][, limite %A]"},
    // Compares the largest order but shows the file's total, on purpose; so does 1821.
    {1802, L"Order above the holder's limit[: %H][, total %A][, limit %A]",
     L"Ordre au-dessus de la limite[ : %H][, total %A][, limite %A]"},
    {1803, L"Signed by one holder[: %H][, total %A][, limit %A]",
     L"Signé par un titulaire[ : %H][, total %A][, limite %A]"},
    {1805, L"No rule is known for these signers[: %T]",
     L"Aucune règle connue pour ces signataires[ : %T]"},
    {1807, L"All signers are allowed", L"Tous les signataires sont admis"},
    {1808, L"Two signatures are required[: %T]", L"Deux signatures sont exigées[ : %T]"},
    {1809, L"A holder of the rule has not signed[: %T]",
     L"Un titulaire de la règle n'a pas signé[ : %T]"},
    {1812, L"There are more signers than a rule can use",
     L"Il y a plus de signataires qu'une règle n'en admet"},
    {1815, L"The contract's profile asks for a single signature[: %T]",
     L"Le profil du contrat demande une seule signature[ : %T]"},
    // Used for a profile that does not match, for signers without a rule and for amounts that
    // cannot be worked out: the text has to be true of all three.
    {1816, L"The contract's signature rules are not met or could not be checked",
     L"Les règles de signature du contrat ne sont pas respectées ou n'ont pu être vérifiées"},
    {1817, L"The holder of the rule has to sign alone",
     L"Le titulaire de la règle doit signer seul"},
    {1818, L"Both holders have the same certificate[: %H][, %H]",
     L"Les deux titulaires ont le même certificat[ : %H][, %H]"},
    {1819, L"The contract is not active", L"Le contrat n'est pas actif"},
    {1820, L"[%H][, %H]: total[ %A] over[ %A]", L"[%H][, %H], total[ %A] dépasse[ %A]"},
    {1821, L"[%H][, %H][: in %A] order over[ %A]", L"[%H][, %H][, sur %A], ordre >[ %A]"},
    {1822, L"[%H][, %H]: total[ %A] within[ %A]", L"[%H][, %H], total[ %A] admis[ (%A)]"},
    {1823, L"Signed by one holder[: %H][, largest order %A][, limit %A]",
     L"Signé par un titulaire[ : %H][, ordre maximal %A][, limite %A]"},
    {10735, L"The payment status report could not be written or handed on",
     L"Le compte rendu de paiement n'a pu être écrit ou remis"},
};

const std::size_t kCatalogueSize = std::size(kCatalogue);

bool IsReservedNumber(unsigned int number) noexcept
{
    static constexpr unsigned int kReserved[] = {1804, 1806, 1810, 1811, 1813, 1814};
    return std::find(std::begin(kReserved), std::end(kReserved), number) != std::end(kReserved);
}

} // namespace support
