#include "amounts/engine_interfaces.h"
#include "engine/failure.h"
#include "engine/run_object.h"
#include "engine/work_object.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// The engine's operations by name, as a script calls them.

using engine::FailureNumber;
using testing_support::TemporaryFolder;

namespace
{

constexpr const char* kLateOrder =
    "<Document><CstmrCdtTrfInitn><GrpHdr><NbOfTxs>1</NbOfTxs></GrpHdr><PmtInf><CdtTrfTxInf><Amt>"
    "<InstdAmt Ccy=\"EUR\">1.00</InstdAmt></Amt></CdtTrfTxInf></PmtInf></CstmrCdtTrfInitn>"
    "</Document>";

VARIANTARG Of(LONG value)
{
    VARIANTARG argument = {};
    argument.vt = VT_I4;
    argument.lVal = value;
    return argument;
}

VARIANTARG Of(LONG* value)
{
    VARIANTARG argument = {};
    argument.vt = VT_BYREF | VT_I4;
    argument.plVal = value;
    return argument;
}

VARIANTARG Of(SHORT* value)
{
    VARIANTARG argument = {};
    argument.vt = VT_BYREF | VT_I2;
    argument.piVal = value;
    return argument;
}

VARIANTARG Of(BSTR* value)
{
    VARIANTARG argument = {};
    argument.vt = VT_BYREF | VT_BSTR;
    argument.pbstrVal = value;
    return argument;
}

VARIANTARG Of(IDispatch* value)
{
    VARIANTARG argument = {};
    argument.vt = VT_DISPATCH;
    argument.pdispVal = value;
    return argument;
}

class LateBinding : public testing::Test
{
protected:
    LateBinding() { EXPECT_EQ(CoInitialize(nullptr), S_OK); }
    ~LateBinding() override
    {
        for (const BSTR text : m_texts)
        {
            SysFreeString(text);
        }
        EXPECT_EQ(m_run->Release(), 0U);
        EXPECT_EQ(m_work->Release(), 0U);
        CoUninitialize();
    }

    /// A text that lives as long as the test.
    VARIANTARG Text(const std::wstring& text)
    {
        VARIANTARG argument = {};
        argument.vt = VT_BSTR;
        argument.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        m_texts.push_back(argument.bstrVal);
        return argument;
    }

    static DISPID NumberOf(IDispatch* object, std::wstring name)
    {
        LPOLESTR names[] = {name.data()};
        DISPID number = 4711;
        m_found = object->GetIDsOfNames(IID_NULL, names, 1, 0, &number);
        return number;
    }

    /// Calls by name with the arguments in their order.
    static HRESULT Call(IDispatch* object, const std::wstring& name,
                        const std::vector<VARIANTARG>& arguments, WORD flags = DISPATCH_METHOD)
    {
        std::vector<VARIANTARG> last(arguments.rbegin(), arguments.rend());
        DISPPARAMS parameters = {last.data(), nullptr, static_cast<UINT>(last.size()), 0};
        m_exception = {};
        UINT wrong = 0;
        return object->Invoke(NumberOf(object, name), IID_NULL, 0, flags, &parameters, nullptr,
                              &m_exception, &wrong);
    }

    static inline HRESULT m_found = S_OK;
    static inline EXCEPINFO m_exception = {};
    engine::RunObject* m_run = new engine::RunObject;
    engine::WorkObject* m_work = new engine::WorkObject;
    std::vector<BSTR> m_texts;
};

TEST_F(LateBinding, EveryOperationHasTheNumberOfItsPosition)
{
    EXPECT_EQ(NumberOf(m_run, L"FMTConnect"), 7);
    EXPECT_EQ(NumberOf(m_run, L"FMTDisconnect"), 9);
    EXPECT_EQ(NumberOf(m_run, L"FMTGetWorkDescr"), 14);
    EXPECT_EQ(NumberOf(m_run, L"FMTWorkExec"), 17);
    EXPECT_EQ(NumberOf(m_run, L"FMTGetLastError"), 20);
    EXPECT_EQ(NumberOf(m_work, L"FMTGetNbTrt"), 17);
    EXPECT_EQ(NumberOf(m_work, L"FMTGetOptions"), 21);
    EXPECT_EQ(NumberOf(m_work, L"FMTSetOptions"), 22);
}

TEST_F(LateBinding, NamesAreFoundWithoutRegardToCase)
{
    EXPECT_EQ(NumberOf(m_run, L"fmtCONNECT"), 7);
    EXPECT_EQ(m_found, S_OK);
}

TEST_F(LateBinding, UnknownNameIsToldAsUnknown)
{
    for (const wchar_t* const name : {L"FMTConnec", L"FMTConnectX", L"Reserved8", L""})
    {
        EXPECT_EQ(NumberOf(m_run, name), DISPID_UNKNOWN) << name;
        EXPECT_EQ(m_found, DISP_E_UNKNOWNNAME) << name;
    }
}

TEST_F(LateBinding, ConvertsAnOrderFile)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", kLateOrder);
    const std::wstring path(order.begin(), order.end());

    LONG connection = 0;
    ASSERT_EQ(Call(m_run, L"FMTConnect", {Text(L"QRV"), Of(&connection)}), S_OK);
    EXPECT_GT(connection, 0);
    LONG found = 0;
    ASSERT_EQ(Call(m_run, L"FMTGetWorkDescr",
                   {Of(connection), Text(L"ISO20022"), Text(L"pain.001"),
                    Of(static_cast<IDispatch*>(m_work)), Of(&found)}),
              S_OK);
    EXPECT_EQ(found, 1);
    SHORT count = 0;
    ASSERT_EQ(Call(m_work, L"FMTGetNbTrt", {Of(&count)}), S_OK);
    EXPECT_EQ(count, 1);
    LONG options = 0;
    ASSERT_EQ(Call(m_work, L"FMTGetOptions", {Of(&options)}), S_OK);
    EXPECT_EQ(options, amounts::kCheckOnly);
    ASSERT_EQ(Call(m_work, L"FMTSetOptions", {Of(LONG{0})}), S_OK);
    SHORT error = -1;
    LONG success = 0;
    ASSERT_EQ(Call(m_run, L"FMTWorkExec",
                   {Of(connection), Of(static_cast<IDispatch*>(m_work)),
                    Text(L"\"" + path + L"\" \"" + path + L".veu\" ;"), Text(L""), Of(&error),
                    Of(&success)}),
              S_OK);
    EXPECT_EQ(success, 1);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(engine_tests::ReadRows(order + ".veu.cp", 4).size(), 1U);

    BSTR text = nullptr;
    LONG reserved = 1;
    LONG code = 1;
    ASSERT_EQ(Call(m_run, L"FMTGetLastError", {Of(&text), Of(&reserved), Of(&code)}), S_OK);
    EXPECT_EQ(SysStringLen(text), 0U);
    EXPECT_EQ(code, 0);
    SysFreeString(text);
    LONG status = 0;
    EXPECT_EQ(Call(m_run, L"FMTDisconnect", {Of(connection), Of(&status)}), S_OK);
    EXPECT_EQ(status, 1);
}

TEST_F(LateBinding, FailureOfAnOperationIsTheCallsException)
{
    LONG status = 1;
    EXPECT_EQ(Call(m_run, L"FMTDisconnect", {Of(LONG{1}), Of(&status)}), DISP_E_EXCEPTION);
    EXPECT_EQ(m_exception.scode, E_FAIL);
    EXPECT_EQ(status, 0);
}

TEST_F(LateBinding, WrongCallsAreRefused)
{
    LONG number = 0;
    EXPECT_EQ(Call(m_work, L"FMTNothing", {}), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(Call(m_work, L"FMTGetOptions", {}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Call(m_work, L"FMTGetOptions", {Of(&number), Of(&number)}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Call(m_work, L"FMTSetOptions", {Text(L"many")}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(m_work->GetOptions(), 0);
}

} // namespace
