#pragma once

#include "port/com.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace amounts_tests
{

/// What a call of the scripted engine raises instead of returning.
enum class Fault
{
    None,
    Unknown,  ///< no exception of the library
    Database, ///< a CDBException
};

/// What the scripted engine answers; as it stands everything succeeds.
struct Script
{
    HRESULT createRun = S_OK;
    bool nullRun = false; ///< success without an object
    HRESULT createWork = S_OK;
    bool nullWork = false;
    HRESULT connect = S_OK;
    LONG connection = 7;
    HRESULT describe = S_OK;
    LONG found = 1;
    LONG options = 0x17;
    HRESULT countTreatments = S_OK;
    SHORT treatments = 1;
    HRESULT execute = S_OK;
    SHORT errorNumber = 0;
    LONG success = 1;
    HRESULT lastError = S_OK;
    const wchar_t* lastErrorText = L"engine text";
    LONG lastErrorCode = 0;

    /// The calls, by name, that raise.
    std::vector<std::string> faultyCalls;
    Fault fault = Fault::Unknown;
    /// The calls that write none of their results.
    std::vector<std::string> silentCalls;
    /// Runs inside the execution, with the parameter text.
    std::function<void(const std::wstring&)> onExecute;
};

/// An engine in this process, registered while it lives. Its objects are bare interface tables, so
/// that every call is judged by its table position; what is called besides fails the test. COM must
/// be initialised.
class ScriptedEngine
{
public:
    explicit ScriptedEngine(Script script);
    ~ScriptedEngine();
    ScriptedEngine(const ScriptedEngine&) = delete;
    ScriptedEngine& operator=(const ScriptedEngine&) = delete;

    /// Every call with its arguments, in order.
    const std::vector<std::string>& Calls() const noexcept { return m_calls; }

    // For the interface tables.
    const Script& GetScript() const noexcept { return m_script; }
    void Note(const std::string& call) { m_calls.push_back(call); }
    void RaiseWhenFaulty(const std::string& call) const;

private:
    class Factory;

    Script m_script;
    std::vector<std::string> m_calls;
    std::vector<DWORD> m_cookies;
};

/// Initialises COM on the test's thread for a scope.
class ComApartment
{
public:
    ComApartment();
    ~ComApartment();
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
};

} // namespace amounts_tests
