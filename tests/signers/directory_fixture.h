#pragma once

#include "database/cdatabase.h"
#include "signers/holder_lookup.h"
#include "tests/signers/trace_file.h"
#include "tests/testing/bank.h"
#include "tests/testing/test_database.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <initializer_list>
#include <string>

namespace testing_support
{

/// Holder tables, an open session connection, a trace, and output buffers with old contents.
class HolderDirectoryTest : public testing::Test
{
protected:
    static constexpr std::size_t kCapacity = signers::kNameCapacity;

    HolderDirectoryTest()
    {
        std::wcscpy(firstName, L"old first");
        std::wcscpy(lastName, L"old last");
        std::wcscpy(certificate, L"old certificate");
    }

    void SetUp() override
    {
        session.OpenEx(tables.ConnexionString().c_str(),
                       CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    }

    void List(std::initializer_list<const wchar_t*> certificates)
    {
        for (const wchar_t* const name : certificates)
        {
            signerInfo signer;
            signer.certificate = name;
            list.Add(signer);
        }
    }

    int Names(const wchar_t* certificateName)
    {
        return signers::GetSignerNames(directory, certificateName, firstName, lastName);
    }

    int Infos(const char* holderId)
    {
        return signers::GetSignerInfos(directory, holderId, notOpposition, certificate, firstName,
                                       lastName, &list);
    }

    void ExpectBuffersUntouched() const
    {
        EXPECT_EQ(std::wstring(firstName), L"old first");
        EXPECT_EQ(std::wstring(lastName), L"old last");
        EXPECT_EQ(std::wstring(certificate), L"old certificate");
        EXPECT_EQ(notOpposition, 7);
    }

    std::wstring FirstNameOf(int index) const
    {
        return list.GetAt(index)->firstName.SafeGetString();
    }
    std::wstring LastNameOf(int index) const { return list.GetAt(index)->lastName.SafeGetString(); }

    TestDatabase tables;
    Bank bank{tables};
    CDatabase session;
    TraceFile trace;
    TSimpleString problem;
    signers::HolderDirectory directory{&session, trace.Handle(), &problem};
    TArray<signerInfo> list{128};
    int notOpposition = 7;
    wchar_t certificate[kCapacity] = {};
    wchar_t firstName[kCapacity] = {};
    wchar_t lastName[kCapacity] = {};
};

} // namespace testing_support
