#pragma once

#include "signutils/signutils_c.h"

#include <gtest/gtest.h>

#include <string>

namespace testing_support
{

/// A session of the C interface for one scope.
class CSession
{
public:
    CSession() { EXPECT_EQ(SignUtilsCreate(nullptr, nullptr, &m_handle), SIGNUTILS_OK); }
    /// Takes a handle over.
    explicit CSession(SignUtilsSession* handle) : m_handle(handle) {}
    ~CSession() { Destroy(); }
    CSession(const CSession&) = delete;
    CSession& operator=(const CSession&) = delete;

    operator SignUtilsSession*() const noexcept { return m_handle; } // NOLINT: used like a handle
    std::string Error() const { return SignUtilsErrorText(m_handle); }
    void Destroy()
    {
        SignUtilsDestroy(m_handle);
        m_handle = nullptr;
    }

private:
    SignUtilsSession* m_handle = nullptr;
};

/// A list of signers for one scope.
class CSigners
{
public:
    CSigners() { EXPECT_EQ(SignUtilsSignersCreate(&m_handle), SIGNUTILS_OK); }
    ~CSigners() { SignUtilsSignersDestroy(m_handle); }
    CSigners(const CSigners&) = delete;
    CSigners& operator=(const CSigners&) = delete;

    operator SignUtilsSigners*() const noexcept { return m_handle; } // NOLINT: used like a handle

private:
    SignUtilsSigners* m_handle = nullptr;
};

inline std::string ThreadErrorText()
{
    return SignUtilsErrorText(nullptr);
}

/// The last check of a session; fails the running test when it cannot be had.
inline SignUtilsCheck LastCheckOf(SignUtilsSession* session)
{
    SignUtilsCheck check = {};
    check.size = sizeof check;
    EXPECT_EQ(SignUtilsGetLastCheck(session, &check), SIGNUTILS_OK);
    return check;
}

/// The contract's side of a session, as SessionTest::Prepare.
inline void PrepareC(SignUtilsSession* session, const std::string& connexionString)
{
    EXPECT_EQ(SignUtilsSetConnexionString(session, connexionString.c_str()), SIGNUTILS_OK);
    EXPECT_EQ(SignUtilsSetContractInfo(session, 1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, ""),
              SIGNUTILS_OK);
    EXPECT_EQ(SignUtilsSetMessageInfo(session, "BANKFRPP", "ORDER0001", "pain.001.001.03", "MSG-1"),
              SIGNUTILS_OK);
    EXPECT_EQ(SignUtilsSetAmountInfo(session, 100.00, 100.00, "EUR"), SIGNUTILS_OK);
    EXPECT_EQ(SignUtilsSetIdFileVfs(session, 7), SIGNUTILS_OK);
}

} // namespace testing_support
