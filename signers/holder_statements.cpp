#include "signers/holder_statements.h"

#include "support/append_text.h"

#include <iterator>

namespace signers
{

const database::RowLayout kHolderRow = {kHolderColumns, std::size(kHolderColumns)};

void AppendHoldersOfCertificate(std::wstring& statement, const wchar_t* certificateName)
{
    support::AppendWords(
        statement,
        L"SELECT H.HUID, H.VPNAME, H.FNAME, H.LNAME, H.OPPOSITION, I.CN, I.SERIAL, I.EXPIRDATE "
        L"FROM SSR_HOLDER H, SSR_HOLDERID I "
        L"WHERE H.HUID=I.HUID AND LOWER(I.CN) = LOWER(N'");
    statement += certificateName == nullptr ? L"" : certificateName;
    statement += L"')";
}

void AppendCertificatesOfHolder(std::wstring& statement, const char* holderId,
                                const TArray<signerInfo>& signers, int count)
{
    support::AppendWords(statement,
                         L"SELECT H.HUID, VPNAME, FNAME, LNAME, OPPOSITION, CN, SERIAL, EXPIRDATE "
                         L"FROM SSR_HOLDER H, SSR_HOLDERID I WHERE H.HUID=I.HUID AND H.HUID='");
    support::AppendCut(statement, holderId == nullptr ? "" : holderId, support::kWhole);
    support::AppendWords(statement, L"' AND (");
    for (int i = 0; i < count; ++i)
    {
        if (i > 0)
        {
            support::AppendWords(statement, L" OR ");
        }
        support::AppendWords(statement, L"LOWER(CN) = LOWER(N'");
        statement += signers.GetAt(i)->certificate.SafeGetString();
        support::AppendWords(statement, L"')");
    }
    statement += L")";
}

} // namespace signers
