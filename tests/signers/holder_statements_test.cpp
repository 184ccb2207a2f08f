#include "signers/holder_statements.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

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
        return signers::CertificatesOfHolder(holderId, signers, count).SafeGetString();
    }

    TArray<signerInfo> signers{128};
};

TEST_F(HolderStatements, LookUpByCertificateComparesInLowerCase)
{
    EXPECT_STREQ(signers::HoldersOfCertificate(L"Ana Ruiz").SafeGetString(),
                 L"SELECT H.HUID, H.VPNAME, H.FNAME, H.LNAME, H.OPPOSITION, I.CN, I.SERIAL, "
                 L"I.EXPIRDATE FROM SSR_HOLDER H, SSR_HOLDERID I WHERE H.HUID=I.HUID AND "
                 L"LOWER(I.CN) = LOWER(N'Ana Ruiz')");
}

TEST_F(HolderStatements, QuotesInACertificateNameAreNotDoubled)
{
    EXPECT_STREQ(signers::HoldersOfCertificate(L"O'Brien").SafeGetString(),
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

    EXPECT_TRUE(std::wstring(signers::HoldersOfCertificate(nullptr).SafeGetString())
                    .ends_with(L"LOWER(I.CN) = LOWER(N'')"));
    EXPECT_NE(OfHolder(nullptr, 1).find(L"H.HUID='' AND ("), std::wstring::npos);
}

TEST_F(HolderStatements, ColumnsAreBoundByTheirSchemaLengths)
{
    const database::RowLayout& row = signers::kHolderRow;
    ASSERT_EQ(row.count, 8U);
    EXPECT_STREQ(row.columns[0].name, "HUID");
    EXPECT_EQ(row.columns[0].length, 64U);
    EXPECT_STREQ(row.columns[1].name, "VPNAME");
    EXPECT_EQ(row.columns[1].length, 8U);
    for (const std::size_t wide : {std::size_t{2}, std::size_t{3}, std::size_t{5}})
    {
        EXPECT_EQ(row.columns[wide].kind, database::ColumnKind::Wide);
        EXPECT_EQ(row.columns[wide].length, 255U);
    }
}

} // namespace
