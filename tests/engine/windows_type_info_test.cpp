#include "amounts/engine_interfaces.h"

#include <gtest/gtest.h>

#include <string>

// The type description that the registered engine's interfaces give.

namespace
{

struct Described
{
    const char* description;
    CLSID clsid;
    int operations;
    DISPID first;
    const wchar_t* name;
};

const Described kDescribed[] = {
    {"run", amounts::kRunClass, 5, 7, L"FMTConnect"},
    {"work", amounts::kWorkClass, 3, 17, L"FMTGetNbTrt"},
};

TEST(TypeInfo, DescribesEveryOperation)
{
    ASSERT_EQ(CoInitialize(nullptr), S_OK);
    for (const Described& each : kDescribed)
    {
        void* made = nullptr;
        ASSERT_EQ(CoCreateInstance(each.clsid, nullptr, CLSCTX_SERVER, IID_IDispatch, &made), S_OK);
        auto* const object = static_cast<IDispatch*>(made);
        UINT count = 0;
        EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
        EXPECT_EQ(count, 1U) << each.description;
        ITypeInfo* info = nullptr;
        EXPECT_EQ(object->GetTypeInfo(1, 0, &info), DISP_E_BADINDEX);
        ASSERT_EQ(object->GetTypeInfo(0, 0, &info), S_OK);

        BSTR name = nullptr;
        EXPECT_EQ(info->GetDocumentation(each.first, &name, nullptr, nullptr, nullptr), S_OK);
        EXPECT_EQ(std::wstring(name, SysStringLen(name)), each.name);
        SysFreeString(name);
        FUNCDESC* operation = nullptr;
        EXPECT_EQ(info->GetFuncDesc(static_cast<UINT>(each.operations) - 1, &operation), S_OK);
        if (operation != nullptr)
        {
            EXPECT_EQ(operation->invkind, INVOKE_FUNC);
            info->ReleaseFuncDesc(operation);
        }
        EXPECT_NE(info->GetFuncDesc(static_cast<UINT>(each.operations), &operation), S_OK);
        info->Release();
        EXPECT_EQ(object->Release(), 0U);
    }
    CoUninitialize();
}

} // namespace
