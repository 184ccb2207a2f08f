#include "signers/holder_statements.h"

#include <iterator>

namespace signers
{

namespace
{

using database::ColumnKind;

constexpr database::ColumnLayout kHolderColumns[] = {
    {"HUID", ColumnKind::Narrow, 64},       {"VPNAME", ColumnKind::Narrow, 8},
    {"FNAME", ColumnKind::Wide, 255},       {"LNAME", ColumnKind::Wide, 255},
    {"OPPOSITION", ColumnKind::Narrow, 20}, {"CN", ColumnKind::Wide, 255},
    {"SERIAL", ColumnKind::Narrow, 64},     {"EXPIRDATE", ColumnKind::Narrow, 32},
};

} // namespace

const database::RowLayout kHolderRow = {kHolderColumns, std::size(kHolderColumns)};

TSimpleStringW HoldersOfCertificate(const wchar_t* certificateName)
{
    TSimpleStringW statement;
    statement.GenerateString(
        L"SELECT H.HUID, H.VPNAME, H.FNAME, H.LNAME, H.OPPOSITION, I.CN, I.SERIAL, I.EXPIRDATE "
        L"FROM SSR_HOLDER H, SSR_HOLDERID I "
        L"WHERE H.HUID=I.HUID AND LOWER(I.CN) = LOWER(N'%s')",
        certificateName == nullptr ? L"" : certificateName);
    return statement;
}

TSimpleStringW CertificatesOfHolder(const char* holderId, const TArray<signerInfo>& signers,
                                    int count)
{
    TSimpleStringW statement;
    statement.GenerateString(
        L"SELECT H.HUID, VPNAME, FNAME, LNAME, OPPOSITION, CN, SERIAL, EXPIRDATE "
        L"FROM SSR_HOLDER H, SSR_HOLDERID I WHERE H.HUID=I.HUID AND H.HUID='%S'",
        holderId == nullptr ? "" : holderId);
    statement += L" AND (";
    for (int i = 0; i < count; ++i)
    {
        if (i > 0)
        {
            statement += L" OR ";
        }
        statement += L"LOWER(CN) = LOWER(N'";
        statement += signers.GetAt(i)->certificate;
        statement += L"')";
    }
    statement += L")";
    return statement;
}

} // namespace signers
