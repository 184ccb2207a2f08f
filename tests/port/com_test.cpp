#include "port/com.h"
#include "tests/port/com_test_module.h"
#include "tests/port/other_thread.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <thread>

// The plain Windows names, so that on Windows COM itself is judged by the same expectations.

namespace
{

using com_test::Factory;
using com_test::kClass;
using com_test::kForeignInterface;
using com_test::kOtherClass;

constexpr DWORD kContext21 = 21;

/// COM on the test's thread, and an object pointer that must not stay as it is.
class Com : public testing::Test
{
protected:
    Com() { EXPECT_EQ(CoInitialize(nullptr), S_OK); }
    ~Com() override
    {
        CoUninitialize();
        EXPECT_EQ(com_test::g_alive, 0);
    }

    HRESULT Create(REFCLSID clsid, DWORD context = kContext21, REFIID iid = IID_IUnknown)
    {
        m_object = this;
        const HRESULT result = CoCreateInstance(clsid, nullptr, context, iid, &m_object);
        EXPECT_EQ(m_object == nullptr, FAILED(result));
        if (SUCCEEDED(result))
        {
            static_cast<IUnknown*>(m_object)->Release();
        }
        return result;
    }

    /// Registers a new class object, which the registration alone keeps alive.
    static DWORD Register(DWORD context = CLSCTX_INPROC_SERVER, DWORD flags = REGCLS_MULTIPLEUSE)
    {
        DWORD cookie = 0;
        auto* const factory = new Factory();
        EXPECT_EQ(CoRegisterClassObject(kClass, factory, context, flags, &cookie), S_OK);
        EXPECT_NE(cookie, 0U);
        factory->Release();
        return cookie;
    }

    void* m_object = nullptr;
};

TEST(ComConstants, AreThoseOfTheInterface)
{
    EXPECT_EQ(CLSCTX_SERVER, 21U);
    EXPECT_EQ(static_cast<std::uint32_t>(REGDB_E_CLASSNOTREG), 0x80040154U);
    EXPECT_EQ(static_cast<std::uint32_t>(CO_E_NOTINITIALIZED), 0x800401F0U);
    EXPECT_EQ(static_cast<std::uint32_t>(E_NOINTERFACE), 0x80004002U);
    EXPECT_EQ(static_cast<std::uint32_t>(CLASS_E_NOAGGREGATION), 0x80040110U);
    EXPECT_EQ(static_cast<std::uint32_t>(E_POINTER), 0x80004003U);
    EXPECT_EQ(static_cast<std::uint32_t>(RPC_E_CHANGED_MODE), 0x80010106U);
    EXPECT_EQ(static_cast<std::uint32_t>(E_OUTOFMEMORY), 0x8007000EU);
    EXPECT_TRUE(SUCCEEDED(S_FALSE));
    EXPECT_TRUE(FAILED(E_FAIL));
}

TEST(ComConstants, FailurePrintedAsANumberIsNegative)
{
    char text[32];
    std::snprintf(text, sizeof text, "%d", static_cast<int>(E_FAIL));
    EXPECT_STREQ(text, "-2147467259");
}

TEST(ComInitialisation, EachSuccessNeedsItsCounterpart)
{
    OnAnotherThread(
        []
        {
            void* object = nullptr;
            const auto create = [&object]
            { return CoCreateInstance(kClass, nullptr, kContext21, IID_IUnknown, &object); };
            EXPECT_EQ(CoInitialize(nullptr), 0);
            EXPECT_EQ(CoInitialize(nullptr), 1);
            CoUninitialize();
            EXPECT_EQ(create(), REGDB_E_CLASSNOTREG) << "still initialised";
            CoUninitialize();
            EXPECT_EQ(create(), CO_E_NOTINITIALIZED);
            EXPECT_EQ(CoInitialize(nullptr), 0);
            CoUninitialize();
        });
}

TEST(ComInitialisation, OtherKindOfApartmentIsRefused)
{
    OnAnotherThread(
        []
        {
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
            EXPECT_EQ(CoInitialize(nullptr), RPC_E_CHANGED_MODE);
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_FALSE);
            CoUninitialize();
            CoUninitialize();
            EXPECT_EQ(CoInitialize(nullptr), S_OK);
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
            CoUninitialize();
        });
}

TEST(ComInitialisation, UninitialisingTooOftenDoesNothing)
{
    OnAnotherThread(
        []
        {
            CoUninitialize();
            EXPECT_EQ(CoInitialize(nullptr), S_OK);
            CoUninitialize();
        });
}

TEST_F(Com, NullResultPointerIsRefused)
{
    EXPECT_EQ(CoCreateInstance(kClass, nullptr, kContext21, IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(Com, UnknownClassIsNotRegistered)
{
    EXPECT_EQ(Create(kClass), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(m_object, nullptr);
}

TEST_F(Com, ClassOfTheProcessIsMade)
{
    const DWORD cookie = Register();
    EXPECT_EQ(Create(kClass), S_OK);
    EXPECT_EQ(Create(kOtherClass), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(CoRevokeClassObject(cookie), S_OK);
    EXPECT_EQ(Create(kClass), REGDB_E_CLASSNOTREG);
}

TEST_F(Com, UnsupportedInterfaceLeavesNull)
{
    const DWORD cookie = Register();
    EXPECT_EQ(Create(kClass, kContext21, kForeignInterface), E_NOINTERFACE);
    EXPECT_EQ(m_object, nullptr);
    CoRevokeClassObject(cookie);
}

TEST_F(Com, ClassThatCannotBeAggregatedSaysSo)
{
    const DWORD cookie = Register();
    auto* const outer = new com_test::Object();
    m_object = this;
    EXPECT_EQ(CoCreateInstance(kClass, outer, kContext21, IID_IUnknown, &m_object),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(m_object, nullptr);
    outer->Release();
    CoRevokeClassObject(cookie);
}

TEST_F(Com, ContextThatTheClassIsNotRegisteredForDoesNotFindIt)
{
    const DWORD cookie = Register(CLSCTX_INPROC_SERVER);
    EXPECT_EQ(Create(kClass, CLSCTX_REMOTE_SERVER), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(Create(kClass, CLSCTX_INPROC_SERVER), S_OK);
    CoRevokeClassObject(cookie);
}

TEST_F(Com, ClassObjectItselfIsHandedOut)
{
    const DWORD cookie = Register();
    void* found = nullptr;
    ASSERT_EQ(CoGetClassObject(kClass, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, &found),
              S_OK);
    auto* const factory = static_cast<IClassFactory*>(found);
    CoRevokeClassObject(cookie);
    void* object = nullptr;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, &object), S_OK)
        << "who has it keeps it after the class is revoked";
    static_cast<IUnknown*>(object)->Release();
    factory->Release();
    EXPECT_EQ(CoGetClassObject(kClass, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, &found),
              REGDB_E_CLASSNOTREG);
    EXPECT_EQ(found, nullptr);
}

TEST_F(Com, WrongRegistrationsAreRefused)
{
    DWORD cookie = 0;
    EXPECT_EQ(
        CoRegisterClassObject(kClass, nullptr, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
        E_INVALIDARG);
    auto* const factory = new Factory();
    EXPECT_EQ(
        CoRegisterClassObject(kClass, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, nullptr),
        E_INVALIDARG);
    factory->Release();
}

TEST_F(Com, CookieIsRevokedOnce)
{
    const DWORD cookie = Register();
    EXPECT_EQ(CoRevokeClassObject(cookie), S_OK);
    EXPECT_EQ(CoRevokeClassObject(cookie), E_INVALIDARG);
    EXPECT_EQ(CoRevokeClassObject(0), E_INVALIDARG);
}

} // namespace
