#include "signers/holder_statements.h"

#include "tests/testing/row_layouts.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using database::ColumnKind;

class HolderStatements : public testing::Test
{
protected:
    void List(const wchar_t* certificate)
    {
        signerInfo signer;
        signer.certificate = certificate;
        signers.Add(signer);
    }

    std::wstring OfHolder(const char* holderId, int count) const
    {
        std::wstring statement;
        signers::AppendCertificatesOfHolder(statement, holderId, signers, count);
        return statement;
    }

    static std::wstring OfCertificate(const wchar_t* certificateName)
    {
        std::wstring statement;
        signers::AppendHoldersOfCertificate(statement, certificateName);
        return statement;
    }

    TArray<signerInfo> signers{128};
};

TEST_F(HolderStatements, LookUpByCertificateComparesInLowerCase)
{
    EXPECT_EQ(OfCertificate(L"Ana Ruiz"),
              L"SELECT H.HUID, H.VPNAME, H.FNAME, H.LNAME, H.OPPOSITION, I.CN, I.SERIAL, "
              L"I.EXPIRDATE FROM SSR_HOLDER H, SSR_HOLDERID I WHERE H.HUID=I.HUID AND "
              L"LOWER(I.CN) = LOWER(N'Ana Ruiz')");
}

TEST_F(HolderStatements, QuotesInACertificateNameAreNotDoubled)
{
    EXPECT_EQ(OfCertificate(L"O'Brien"),
              L"SELECT H.HUID, H.VPNAME, H.FNAME, H.LNAME, H.OPPOSITION, I.CN, I.SERIAL, "
              L"I.EXPIRDATE FROM SSR_HOLDER H, SSR_HOLDERID I WHERE H.HUID=I.HUID AND "
              L"LOWER(I.CN) = LOWER(N'O'Brien')");
}

TEST_F(HolderStatements, LookUpOfAHolderNamesEverySigner)
{
    List(L"Ana Ruiz");
    List(L"O'Brien");

    EXPECT_EQ(OfHolder("H1", 2),
              L"SELECT H.HUID, VPNAME, FNAME, LNAME, OPPOSITION, CN, SERIAL, EXPIRDATE FROM "
              L"SSR_HOLDER H, SSR_HOLDERID I WHERE H.HUID=I.HUID AND H.HUID='H1' AND ("
              L"LOWER(CN) = LOWER(N'Ana Ruiz') OR LOWER(CN) = LOWER(N'O'Brien'))");
}

TEST_F(HolderStatements, LookUpOfAHolderWithOneSignerHasNoOr)
{
    List(L"Ana Ruiz");

    EXPECT_EQ(OfHolder("H'1", 1),
              L"SELECT H.HUID, VPNAME, FNAME, LNAME, OPPOSITION, CN, SERIAL, EXPIRDATE FROM "
              L"SSR_HOLDER H, SSR_HOLDERID I WHERE H.HUID=I.HUID AND H.HUID='H'1' AND ("
              L"LOWER(CN) = LOWER(N'Ana Ruiz'))");
}

TEST_F(HolderStatements, HolderIdentifiersAreWindows1252)
{
    List(L"A");

    EXPECT_NE(OfHolder("H\xE9\x80", 1).find(L"H.HUID='H\u00E9\u20AC' AND ("), std::wstring::npos);
}

TEST_F(HolderStatements, NullTextsCountAsEmpty)
{
    List(L"A");

    EXPECT_TRUE(OfCertificate(nullptr).ends_with(L"LOWER(I.CN) = LOWER(N'')"));
    EXPECT_NE(OfHolder(nullptr, 1).find(L"H.HUID='' AND ("), std::wstring::npos);
}

TEST_F(HolderStatements, RowIsBoundByTheLengthsOfTheSchema)
{
    constexpr database::ColumnLayout columns[] = {
        {"HUID", ColumnKind::Narrow, 64},       {"VPNAME", ColumnKind::Narrow, 8},
        {"FNAME", ColumnKind::Wide, 255},       {"LNAME", ColumnKind::Wide, 255},
        {"OPPOSITION", ColumnKind::Narrow, 20}, {"CN", ColumnKind::Wide, 255},
        {"SERIAL", ColumnKind::Narrow, 64},     {"EXPIRDATE", ColumnKind::Narrow, 32},
    };
    testing_support::ExpectLayout(signers::kHolderRow, columns);
}

} // namespace
