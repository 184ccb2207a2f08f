#include "amounts/engine_interfaces.h"

#include <gtest/gtest.h>

#include <array>

// The registered engine module, as hosts reach it.

namespace
{

using Operation = HRESULT(STDAPICALLTYPE*)();

class WindowsModule : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(CoInitialize(nullptr), S_OK);
        void* made = nullptr;
        ASSERT_EQ(
            CoCreateInstance(amounts::kRunClass, nullptr, CLSCTX_SERVER, IID_IDispatch, &made),
            S_OK);
        m_run = static_cast<IDispatch*>(made);
    }
    void TearDown() override
    {
        Release();
        CoUninitialize();
    }
    void Release()
    {
        if (m_run != nullptr)
        {
            m_run->Release();
            m_run = nullptr;
        }
    }
    HRESULT Call(const wchar_t* name, VARIANTARG* lastArgumentFirst, UINT count)
    {
        std::wstring text = name;
        LPOLESTR names[] = {text.data()};
        DISPID number = DISPID_UNKNOWN;
        const HRESULT found = m_run->GetIDsOfNames(IID_NULL, names, 1, 0, &number);
        if (FAILED(found))
        {
            return found;
        }
        DISPPARAMS parameters = {lastArgumentFirst, nullptr, count, 0};
        return m_run->Invoke(number, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                             nullptr);
    }

    IDispatch* m_run = nullptr;
};

VARIANTARG Of(LONG& number)
{
    VARIANTARG argument = {};
    argument.vt = VT_BYREF | VT_I4;
    argument.plVal = &number;
    return argument;
}

TEST_F(WindowsModule, ObjectThatWasActivatedIsCalledByName)
{
    LONG connection = 0;
    std::array<VARIANTARG, 2> connect = {Of(connection), {}};
    connect[1].vt = VT_BSTR;
    connect[1].bstrVal = SysAllocString(L"QRV");
    EXPECT_EQ(Call(L"FMTConnect", connect.data(), 2), S_OK);
    SysFreeString(connect[1].bstrVal);
    EXPECT_GT(connection, 0);

    LONG status = 0;
    std::array<VARIANTARG, 2> disconnect = {Of(status), {}};
    disconnect[1].vt = VT_I4;
    disconnect[1].lVal = connection;
    EXPECT_EQ(Call(L"FMTDisconnect", disconnect.data(), 2), S_OK);
    EXPECT_EQ(status, 1);
}

TEST_F(WindowsModule, MayBeUnloadedOnceItsObjectsAreGone)
{
    const HMODULE module = GetModuleHandleA("signutils-engine.dll");
    ASSERT_NE(module, nullptr);
    const auto canUnloadNow = reinterpret_cast<Operation>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
    ASSERT_NE(canUnloadNow, nullptr);
    EXPECT_EQ(canUnloadNow(), S_FALSE);
    Release();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

} // namespace
