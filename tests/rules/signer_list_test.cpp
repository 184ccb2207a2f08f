#include "rules/signer_list.h"

#include "tests/signers/trace_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

class SignerList : public testing::Test
{
protected:
    std::vector<std::wstring> Append(const wchar_t* list)
    {
        rules::AppendSigners(trace.Handle(), list, signers);
        std::vector<std::wstring> certificates;
        for (int i = 0; i < signers.GetCount(); ++i)
        {
            EXPECT_TRUE(signers.GetAt(i)->firstName.IsEmpty());
            EXPECT_TRUE(signers.GetAt(i)->lastName.IsEmpty());
            certificates.emplace_back(signers.GetAt(i)->certificate.SafeGetString());
        }
        return certificates;
    }

    testing_support::TraceFile trace;
    TArray<signerInfo> signers{128};
};

TEST_F(SignerList, BlankTokenAndTrailingSeparatorAreSkipped)
{
    EXPECT_THAT(Append(L"A; ;B;"), ElementsAre(L"A", L"B"));
}

TEST_F(SignerList, TokensAreTrimmedAtBothEnds)
{
    EXPECT_THAT(Append(L" \t Ana Ruiz\r\n;\tBo Dahl "), ElementsAre(L"Ana Ruiz", L"Bo Dahl"));
}

TEST_F(SignerList, RunsOfSeparatorsCountAsOne)
{
    EXPECT_THAT(Append(L";;A;;;B;;"), ElementsAre(L"A", L"B"));
}

TEST_F(SignerList, SeparatorsAloneGiveNobody)
{
    EXPECT_THAT(Append(L";;;"), IsEmpty());
}

TEST_F(SignerList, EmptyAndNullListsGiveNobody)
{
    EXPECT_THAT(Append(L""), IsEmpty());
    EXPECT_THAT(Append(nullptr), IsEmpty());
}

TEST_F(SignerList, SessionSignersAreKeptAndAppendedTo)
{
    Append(L"A");
    EXPECT_THAT(Append(L"B;A"), ElementsAre(L"A", L"B", L"A"));
}

TEST_F(SignerList, CommaBelongsToTheName)
{
    EXPECT_THAT(Append(L"Ruiz, Ana;B"), ElementsAre(L"Ruiz, Ana", L"B"));
}

TEST_F(SignerList, TokensAreTracedBeforeTheyAreTrimmed)
{
    Append(L";A;;\u00E9 ; ;B");

    EXPECT_EQ(trace.Lines(), "[SIGNERS]\n#Signer|A\n#Signer|\xC3\xA9 \n#Signer| \n#Signer|B\n");
}

TEST_F(SignerList, MoreThan128SignersAreAllKept)
{
    std::wstring list;
    for (int i = 0; i < 300; ++i)
    {
        list += std::to_wstring(i) + L";";
    }
    const auto certificates = Append(list.c_str());

    ASSERT_EQ(certificates.size(), 300U);
    EXPECT_EQ(certificates.front(), L"0");
    EXPECT_EQ(certificates.back(), L"299");
}

} // namespace
