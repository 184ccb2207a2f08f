#include "amounts/engine_interfaces.h"
#include "engine/failure.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>

// The module as a caller has it: made by COM, called by table positions or through the interfaces.

using amounts::IFmtRun;
using amounts::IFmtWork;
using engine::FailureNumber;
using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::TemporaryFolder;

namespace
{

constexpr DWORD kAnyServer = 21;
constexpr const char* kOrder =
    "<Document><CstmrCdtTrfInitn><GrpHdr><NbOfTxs>1</NbOfTxs></GrpHdr><PmtInf><CdtTrfTxInf><Amt>"
    "<InstdAmt Ccy=\"EUR\">1.00</InstdAmt></Amt></CdtTrfTxInf></PmtInf></CstmrCdtTrfInitn>"
    "</Document>";

class Bstr
{
public:
    explicit Bstr(const wchar_t* text) : m_text(SysAllocString(text)) {}
    ~Bstr() { SysFreeString(m_text); }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    operator BSTR() const { return m_text; }

private:
    BSTR m_text;
};

std::wstring Wide(const std::string& ascii)
{
    return {ascii.begin(), ascii.end()};
}

class EngineServer : public testing::Test
{
protected:
    EngineServer()
    {
        EXPECT_EQ(CoInitialize(nullptr), S_OK);
        m_run = Make<IFmtRun>(amounts::kRunClass, amounts::kRunInterface);
        m_work = Make<IFmtWork>(amounts::kWorkClass, amounts::kWorkInterface);
    }

    ~EngineServer() override
    {
        for (IUnknown* const object :
             {static_cast<IUnknown*>(m_work), static_cast<IUnknown*>(m_run)})
        {
            if (object != nullptr)
            {
                EXPECT_EQ(object->Release(), 0U);
            }
        }
        CoUninitialize();
    }

    void SetUp() override
    {
        ASSERT_NE(m_run, nullptr);
        ASSERT_NE(m_work, nullptr);
    }

    template <typename Interface>
    static Interface* Make(REFCLSID clsid, REFIID iid)
    {
        void* object = nullptr;
        EXPECT_EQ(CoCreateInstance(clsid, nullptr, kAnyServer, iid, &object), S_OK);
        return static_cast<Interface*>(object);
    }

    void OpenConnection() { ASSERT_EQ(m_run->FMTConnect(Bstr(L"QRV"), &m_connection), S_OK); }

    // Connected, with the work of credit transfers, which is to write its files.
    void DescribeTransfers()
    {
        OpenConnection();
        LONG found = 0;
        ASSERT_EQ(m_run->FMTGetWorkDescr(m_connection, Bstr(L"ISO20022"), Bstr(L"pain.001"), m_work,
                                         &found),
                  S_OK);
        ASSERT_EQ(found, 1);
        ASSERT_EQ(m_work->FMTSetOptions(0), S_OK);
    }

    // Success flag; the number goes to m_error.
    LONG Execute(const std::wstring& parameters)
    {
        LONG success = -1;
        m_error = -1;
        EXPECT_EQ(m_run->FMTWorkExec(m_connection, m_work, Bstr(parameters.c_str()), Bstr(L""),
                                     &m_error, &success),
                  S_OK);
        return success;
    }

    static std::wstring Parameters(const std::string& order)
    {
        return L"\"" + Wide(order) + L"\" \"" + Wide(order) + L".veu\" ;";
    }

    FailureNumber LastNumber(std::string* text = nullptr)
    {
        BSTR told = nullptr;
        LONG reserved = 1;
        LONG code = -1;
        EXPECT_EQ(m_run->FMTGetLastError(&told, &reserved, &code), S_OK);
        EXPECT_EQ(reserved, 0);
        if (text != nullptr)
        {
            *text = std::string(told, told + SysStringLen(told));
        }
        SysFreeString(told);
        return static_cast<FailureNumber>(code);
    }

    IFmtRun* m_run = nullptr;
    IFmtWork* m_work = nullptr;
    LONG m_connection = 0;
    SHORT m_error = -1;
};

using Table = void* const*;

// The entry of an object's interface table.
template <typename Function>
Function Entry(void* object, std::size_t position)
{
    return reinterpret_cast<Function>((*static_cast<Table*>(object))[position]);
}

TEST_F(EngineServer, ConvertsWhenCalledByTablePositions)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", kOrder);
    using Connect = HRESULT(STDMETHODCALLTYPE*)(void*, BSTR, LONG*);
    using Close = HRESULT(STDMETHODCALLTYPE*)(void*, LONG, LONG*);
    using Describe = HRESULT(STDMETHODCALLTYPE*)(void*, LONG, BSTR, BSTR, void*, LONG*);
    using Exec = HRESULT(STDMETHODCALLTYPE*)(void*, LONG, void*, BSTR, BSTR, SHORT*, LONG*);
    using LastError = HRESULT(STDMETHODCALLTYPE*)(void*, BSTR*, LONG*, LONG*);
    using Count = HRESULT(STDMETHODCALLTYPE*)(void*, SHORT*);
    using GetOptions = HRESULT(STDMETHODCALLTYPE*)(void*, LONG*);
    using SetOptions = HRESULT(STDMETHODCALLTYPE*)(void*, LONG);

    LONG connection = 0;
    ASSERT_EQ(Entry<Connect>(m_run, 7)(m_run, Bstr(L"QRV"), &connection), S_OK);
    EXPECT_GT(connection, 0);
    LONG found = 0;
    ASSERT_EQ(Entry<Describe>(m_run, 14)(m_run, connection, Bstr(L"ISO20022"), Bstr(L"pain.001"),
                                         m_work, &found),
              S_OK);
    EXPECT_EQ(found, 1);
    SHORT count = 0;
    ASSERT_EQ(Entry<Count>(m_work, 17)(m_work, &count), S_OK);
    EXPECT_EQ(count, 1);
    LONG options = 0;
    ASSERT_EQ(Entry<GetOptions>(m_work, 21)(m_work, &options), S_OK);
    EXPECT_EQ(options, 2);
    ASSERT_EQ(Entry<SetOptions>(m_work, 22)(m_work, options & ~2), S_OK);
    SHORT error = -1;
    LONG success = 0;
    ASSERT_EQ(Entry<Exec>(m_run, 17)(m_run, connection, m_work, Bstr(Parameters(order).c_str()),
                                     Bstr(L""), &error, &success),
              S_OK);
    EXPECT_EQ(success, 1);
    EXPECT_EQ(error, 0);
    BSTR text = nullptr;
    LONG reserved = 1;
    LONG code = 1;
    ASSERT_EQ(Entry<LastError>(m_run, 20)(m_run, &text, &reserved, &code), S_OK);
    EXPECT_EQ(SysStringLen(text), 0U);
    EXPECT_EQ(code, 0);
    SysFreeString(text);
    LONG status = 0;
    EXPECT_EQ(Entry<Close>(m_run, 9)(m_run, connection, &status), S_OK);
    EXPECT_EQ(engine_tests::ReadRows(order + ".veu.cp", 4).size(), 1U);
}

TEST_F(EngineServer, ReservedPositionsAreNotImplemented)
{
    using Reserved = HRESULT(STDMETHODCALLTYPE*)(void*);
    for (const std::size_t position : {8U, 10U, 11U, 12U, 13U, 15U, 16U, 18U, 19U})
    {
        EXPECT_EQ(Entry<Reserved>(m_run, position)(m_run), E_NOTIMPL) << position;
    }
    for (const std::size_t position :
         {7U, 8U, 9U, 10U, 11U, 12U, 13U, 14U, 15U, 16U, 18U, 19U, 20U})
    {
        EXPECT_EQ(Entry<Reserved>(m_work, position)(m_work), E_NOTIMPL) << position;
    }
}

TEST_F(EngineServer, InterfacesAreDual)
{
    for (IUnknown* const object : {static_cast<IUnknown*>(m_run), static_cast<IUnknown*>(m_work)})
    {
        void* dispatch = nullptr;
        ASSERT_EQ(object->QueryInterface(IID_IDispatch, &dispatch), S_OK);
        auto* const late = static_cast<IDispatch*>(dispatch);
        EXPECT_EQ(late->Release(), 1U);
        void* other = object;
        EXPECT_EQ(object->QueryInterface(amounts::kRunClass, &other), E_NOINTERFACE);
        EXPECT_EQ(other, nullptr);
        EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    }
}

TEST_F(EngineServer, ObjectsCannotBeAggregated)
{
    void* object = this;
    EXPECT_EQ(CoCreateInstance(amounts::kRunClass, m_run, kAnyServer, IID_IUnknown, &object),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
}

TEST_F(EngineServer, EachConnectionHasItsNumber)
{
    OpenConnection();
    IFmtRun* const other = Make<IFmtRun>(amounts::kRunClass, amounts::kRunInterface);
    ASSERT_NE(other, nullptr);
    LONG second = 0;
    EXPECT_EQ(other->FMTConnect(Bstr(L"QRV"), &second), S_OK);
    EXPECT_GT(second, 0);
    EXPECT_NE(second, m_connection);
    LONG status = 1;
    EXPECT_TRUE(FAILED(other->FMTDisconnect(m_connection, &status))) << "another object's";
    EXPECT_EQ(status, 0);
    EXPECT_EQ(other->Release(), 0U);
}

TEST_F(EngineServer, ConnectsOnceAtATime)
{
    OpenConnection();
    LONG second = 1;
    EXPECT_TRUE(FAILED(m_run->FMTConnect(Bstr(L"QRV"), &second)));
    EXPECT_EQ(second, 0);
    EXPECT_EQ(LastNumber(), FailureNumber::NotConnected);
    LONG status = 0;
    EXPECT_EQ(m_run->FMTDisconnect(m_connection, &status), S_OK);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(m_run->FMTConnect(Bstr(L"QRV"), &second), S_OK);
}

TEST_F(EngineServer, NothingWorksWithoutAConnection)
{
    LONG found = 1;
    EXPECT_TRUE(
        FAILED(m_run->FMTGetWorkDescr(0, Bstr(L"ISO20022"), Bstr(L"pain.001"), m_work, &found)));
    EXPECT_EQ(found, 0);
    EXPECT_EQ(LastNumber(), FailureNumber::NotConnected);
    EXPECT_EQ(Execute(L""), 0);
    EXPECT_EQ(m_error, static_cast<SHORT>(FailureNumber::NotConnected));
    LONG status = 1;
    EXPECT_TRUE(FAILED(m_run->FMTDisconnect(1, &status)));
}

TEST_F(EngineServer, ClientWithoutANameIsRefused)
{
    EXPECT_TRUE(FAILED(m_run->FMTConnect(nullptr, &m_connection)));
    EXPECT_EQ(LastNumber(), FailureNumber::NotConnected);
}

TEST_F(EngineServer, UnknownWorkIsNotFoundAndNamed)
{
    OpenConnection();
    LONG found = 1;
    EXPECT_EQ(
        m_run->FMTGetWorkDescr(m_connection, Bstr(L"EDIFACT"), Bstr(L"PAYMUL"), m_work, &found),
        S_OK);
    EXPECT_EQ(found, 0);
    std::string text;
    EXPECT_EQ(LastNumber(&text), FailureNumber::UnknownWork);
    EXPECT_THAT(text, HasSubstr("EDIFACT/PAYMUL"));
    EXPECT_THAT(text, HasSubstr("SWIFT/MT101"));
    SHORT count = 9;
    EXPECT_EQ(m_work->FMTGetNbTrt(&count), S_OK);
    EXPECT_EQ(count, 0) << "no work is described";
}

TEST_F(EngineServer, NullWorkObjectIsRefused)
{
    OpenConnection();
    LONG found = 1;
    EXPECT_TRUE(FAILED(
        m_run->FMTGetWorkDescr(m_connection, Bstr(L"CFONB"), Bstr(L"160"), nullptr, &found)));
    EXPECT_EQ(LastNumber(), FailureNumber::UnknownWork);
}

TEST_F(EngineServer, UndescribedWorkIsNotRun)
{
    OpenConnection();
    EXPECT_EQ(Execute(L"\"a\" \"b\" ;"), 0);
    EXPECT_EQ(LastNumber(), FailureNumber::UnknownWork);
}

TEST_F(EngineServer, ParametersForAnotherNumberOfTreatmentsAreRefused)
{
    DescribeTransfers();
    for (const wchar_t* const parameters :
         {L"", L"\"a\" \"b\" ; | \"a\" \"b\" ;", L"no parameters"})
    {
        EXPECT_EQ(Execute(parameters), 0);
        EXPECT_EQ(m_error, static_cast<SHORT>(FailureNumber::BadParameters));
    }
}

TEST_F(EngineServer, FileThatCannotBeConvertedIsTheLastError)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", "<Document>");
    DescribeTransfers();
    EXPECT_EQ(Execute(Parameters(order)), 0);
    EXPECT_EQ(m_error, static_cast<SHORT>(FailureNumber::Malformed));
    std::string text;
    EXPECT_EQ(LastNumber(&text), FailureNumber::Malformed);
    EXPECT_THAT(text, HasSubstr(order));
    EXPECT_THAT(text, HasSubstr("line 1"));
    EXPECT_THAT(engine_tests::Names(folder.Path()), ElementsAre("order.xml"));
}

TEST_F(EngineServer, LastErrorIsCleanAfterASuccess)
{
    const TemporaryFolder folder;
    DescribeTransfers();
    EXPECT_EQ(Execute(Parameters(folder.Path("missing.xml"))), 0);
    EXPECT_EQ(LastNumber(), FailureNumber::InputUnreadable);
    EXPECT_EQ(LastNumber(), FailureNumber::InputUnreadable) << "reading it does not clear it";
    EXPECT_EQ(Execute(Parameters(folder.Write("order.xml", kOrder))), 1);
    EXPECT_EQ(LastNumber(), FailureNumber::None);
}

TEST_F(EngineServer, CheckOnlyLeavesNoWorkFile)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", kOrder);
    DescribeTransfers();
    EXPECT_EQ(m_work->FMTSetOptions(amounts::kCheckOnly), S_OK);
    EXPECT_EQ(Execute(Parameters(order)), 1);
    EXPECT_THAT(engine_tests::Names(folder.Path()), ElementsAre("order.xml"));
}

TEST_F(EngineServer, NullResultsAreRefused)
{
    OpenConnection();
    EXPECT_EQ(m_run->FMTConnect(Bstr(L"QRV"), nullptr), E_POINTER);
    EXPECT_EQ(m_run->FMTDisconnect(m_connection, nullptr), E_POINTER);
    EXPECT_EQ(m_run->FMTGetWorkDescr(m_connection, nullptr, nullptr, m_work, nullptr), E_POINTER);
    EXPECT_EQ(m_run->FMTWorkExec(m_connection, m_work, nullptr, nullptr, nullptr, nullptr),
              E_POINTER);
    EXPECT_EQ(m_run->FMTGetLastError(nullptr, nullptr, nullptr), E_POINTER);
    EXPECT_EQ(m_work->FMTGetNbTrt(nullptr), E_POINTER);
    EXPECT_EQ(m_work->FMTGetOptions(nullptr), E_POINTER);
}

} // namespace
