#pragma once

#include "amounts/engine_interfaces.h"
#include "engine/com_object.h"
#include "engine/failure.h"

#include <string>

namespace engine
{

class WorkObject;

/// Holds one connection to the engine and executes works on it. Every operation but the last error
/// itself starts with a clean last error.
class RunObject final : public DispatchObject<amounts::IFmtRun>
{
public:
    HRESULT STDMETHODCALLTYPE FMTConnect(BSTR client, LONG* connection) override;
    HRESULT STDMETHODCALLTYPE FMTDisconnect(LONG connection, LONG* status) override;
    HRESULT STDMETHODCALLTYPE FMTGetWorkDescr(LONG connection, BSTR format1, BSTR format2,
                                              amounts::IFmtWork* work, LONG* found) override;
    /// S_OK also for a conversion that fails: `success` is then 0 and `error` its number.
    HRESULT STDMETHODCALLTYPE FMTWorkExec(LONG connection, amounts::IFmtWork* work, BSTR parameters,
                                          BSTR second, SHORT* error, LONG* success) override;
    HRESULT STDMETHODCALLTYPE FMTGetLastError(BSTR* text, LONG* reserved, LONG* code) override;

protected:
    bool Implements(REFIID iid) const override;
    const port::DispatchInterface& Operations() const override;

private:
    template <typename Action>
    HRESULT Guard(Action&& action);
    void Remember(FailureNumber number, const char* text) noexcept;
    void RequireConnection(LONG connection) const;
    static WorkObject& RequireWork(amounts::IFmtWork* work);
    static void Execute(const WorkObject& work, BSTR parameters);

    LONG m_connection = 0;
    FailureNumber m_errorNumber = FailureNumber::None;
    std::string m_errorText; // Windows-1252
};

} // namespace engine
