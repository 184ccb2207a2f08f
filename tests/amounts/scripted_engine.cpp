#include "tests/amounts/scripted_engine.h"

#include "amounts/engine_interfaces.h"
#include "database/cdbexception.h"
#include "support/codepage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace amounts_tests
{

namespace
{

constexpr std::size_t kTableSize = 23;
using Table = std::array<void*, kTableSize>;

struct RawObject
{
    const void* table; // where an interface pointer points at
    ScriptedEngine* engine;
    const char* name;
    int references;
};

std::string Text(BSTR text)
{
    return text == nullptr ? "(null)" : support::NarrowFromWide({text, SysStringLen(text)});
}

// Notes the call, raises when it is to fail so.
const Script& Enter(const RawObject* object, const std::string& call, const std::string& arguments)
{
    object->engine->Note(arguments.empty() ? call : call + " " + arguments);
    object->engine->RaiseWhenFaulty(call);
    return object->engine->GetScript();
}

bool IsSilent(const Script& script, const char* call)
{
    return std::find(script.silentCalls.begin(), script.silentCalls.end(), call) !=
           script.silentCalls.end();
}

template <std::size_t Position>
HRESULT STDMETHODCALLTYPE Unexpected(RawObject* object)
{
    ADD_FAILURE() << object->name << ": unexpected call of position " << Position;
    return E_UNEXPECTED;
}

ULONG STDMETHODCALLTYPE Release(RawObject* object)
{
    const ULONG left = static_cast<ULONG>(--object->references);
    const std::unique_ptr<RawObject> gone(left == 0 ? object : nullptr);
    Enter(object, std::string("Release") + object->name, "");
    return left;
}

HRESULT STDMETHODCALLTYPE Connect(RawObject* object, BSTR client, LONG* connection)
{
    const Script& script = Enter(object, "FMTConnect", Text(client));
    *connection = script.connection;
    return script.connect;
}

HRESULT STDMETHODCALLTYPE Disconnect(RawObject* object, LONG connection, LONG* status)
{
    Enter(object, "Close", std::to_string(connection));
    *status = 1;
    return E_FAIL; // nobody looks at it
}

HRESULT STDMETHODCALLTYPE Describe(RawObject* object, LONG connection, BSTR format1, BSTR format2,
                                   const RawObject* work, LONG* found)
{
    const Script& script =
        Enter(object, "FMTGetWorkDescr",
              std::to_string(connection) + " " + Text(format1) + " " + Text(format2) + " " +
                  (work == nullptr ? "(null)" : work->name));
    if (!IsSilent(script, "FMTGetWorkDescr"))
    {
        *found = script.found;
    }
    return script.describe;
}

HRESULT STDMETHODCALLTYPE Execute(RawObject* object, LONG connection, const RawObject* work,
                                  BSTR parameters, BSTR second, SHORT* error, LONG* success)
{
    const Script& script = Enter(object, "FMTWorkExec",
                                 std::to_string(connection) + " " + work->name + " [" +
                                     Text(parameters) + "] [" + Text(second) + "]");
    if (script.onExecute)
    {
        script.onExecute(parameters);
    }
    if (!IsSilent(script, "FMTWorkExec"))
    {
        *error = script.errorNumber;
        *success = script.success;
    }
    return script.execute;
}

HRESULT STDMETHODCALLTYPE LastError(RawObject* object, BSTR* text, LONG* reserved, LONG* code)
{
    const Script& script = Enter(object, "LastError", "");
    if (!IsSilent(script, "LastError"))
    {
        *text = SysAllocString(script.lastErrorText);
        *reserved = 0;
        *code = script.lastErrorCode;
    }
    return script.lastError;
}

HRESULT STDMETHODCALLTYPE CountTreatments(RawObject* object, SHORT* count)
{
    const Script& script = Enter(object, "FMTGetNbTrt", "");
    *count = script.treatments;
    return script.countTreatments;
}

HRESULT STDMETHODCALLTYPE GetOptions(RawObject* object, LONG* flags)
{
    const Script& script = Enter(object, "GetOptions", "");
    *flags = script.options;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SetOptions(RawObject* object, LONG flags)
{
    Enter(object, "SetOptions", std::to_string(flags));
    return S_OK;
}

template <typename Function>
void* Entry(Function* function)
{
    return reinterpret_cast<void*>(function);
}

template <std::size_t... Positions>
Table TableOfUnexpected(std::index_sequence<Positions...> /*positions*/)
{
    return {Entry(&Unexpected<Positions>)...};
}

Table RunTable()
{
    Table table = TableOfUnexpected(std::make_index_sequence<kTableSize>());
    table[2] = Entry(&Release);
    table[7] = Entry(&Connect);
    table[9] = Entry(&Disconnect);
    table[14] = Entry(&Describe);
    table[17] = Entry(&Execute);
    table[20] = Entry(&LastError);
    return table;
}

Table WorkTable()
{
    Table table = TableOfUnexpected(std::make_index_sequence<kTableSize>());
    table[2] = Entry(&Release);
    table[17] = Entry(&CountTreatments);
    table[21] = Entry(&GetOptions);
    table[22] = Entry(&SetOptions);
    return table;
}

const Table kRunTable = RunTable();
const Table kWorkTable = WorkTable();

} // namespace

class ScriptedEngine::Factory final : public IClassFactory
{
public:
    Factory(ScriptedEngine& engine, bool makesRuns) : m_engine(engine), m_makesRuns(makesRuns) {}
    virtual ~Factory() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory))
        {
            return E_NOINTERFACE;
        }
        *object = this;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        const std::unique_ptr<Factory> gone(left == 0 ? this : nullptr);
        return left;
    }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override
    {
        EXPECT_EQ(outer, nullptr);
        EXPECT_TRUE(
            IsEqualIID(iid, m_makesRuns ? amounts::kRunInterface : amounts::kWorkInterface));
        const std::string call = m_makesRuns ? "CreateRun" : "CreateWork";
        m_engine.Note(call);
        m_engine.RaiseWhenFaulty(call);
        const Script& script = m_engine.GetScript();
        const HRESULT result = m_makesRuns ? script.createRun : script.createWork;
        if (FAILED(result) || (m_makesRuns ? script.nullRun : script.nullWork))
        {
            return result;
        }
        *object = m_makesRuns ? new RawObject{kRunTable.data(), &m_engine, "Run", 1}
                              : new RawObject{kWorkTable.data(), &m_engine, "Work", 1};
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL /*lock*/) override { return S_OK; }

private:
    ScriptedEngine& m_engine;
    bool m_makesRuns;
    ULONG m_references = 1;
};

ScriptedEngine::ScriptedEngine(Script script) : m_script(std::move(script))
{
    for (const bool runs : {true, false})
    {
        auto* const factory = new Factory(*this, runs);
        DWORD cookie = 0;
        EXPECT_EQ(CoRegisterClassObject(runs ? amounts::kRunClass : amounts::kWorkClass, factory,
                                        CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
                  S_OK);
        factory->Release();
        m_cookies.push_back(cookie);
    }
}

ScriptedEngine::~ScriptedEngine()
{
    for (const DWORD cookie : m_cookies)
    {
        EXPECT_EQ(CoRevokeClassObject(cookie), S_OK);
    }
}

void ScriptedEngine::RaiseWhenFaulty(const std::string& call) const
{
    const auto& faulty = m_script.faultyCalls;
    if (std::find(faulty.begin(), faulty.end(), call) == faulty.end())
    {
        return;
    }
    if (m_script.fault == Fault::Database)
    {
        throw new CDBException(-1, "HY000", 17, "driver text", "statement");
    }
    throw call.size();
}

ComApartment::ComApartment()
{
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
}

ComApartment::~ComApartment()
{
    CoUninitialize();
}

} // namespace amounts_tests
