#pragma once

#include "amounts/com_guards.h"
#include "amounts/engine_interfaces.h"
#include "containers/thashtabletss.h"
#include "support/tsimplestring.h"

#include <string>

namespace amounts
{

/// One run of the format-conversion engine on one order file. COM must be initialised on the
/// calling thread. Texts are Windows-1252 and borrowed.
class EngineSession
{
public:
    /// Of each of its two text tables.
    static constexpr int kBucketCount = 61;

    EngineSession(const char* fileName, const char* format1, const char* format2);
    ~EngineSession();
    EngineSession(const EngineSession&) = delete;
    EngineSession& operator=(const EngineSession&) = delete;

    /// Runs the work and closes everything again. Whether it succeeded; else ErrorText says why.
    bool Convert();
    const TSimpleString& ErrorText() const noexcept { return m_error; }

private:
    HRESULT RunSteps();
    HRESULT CreateRun();
    HRESULT Connect();
    HRESULT CreateWork();
    HRESULT Describe();
    HRESULT CountTreatments();
    HRESULT Execute();

    std::wstring ParameterText() const;
    /// Takes the engine's last error as the error text, or the fall-back with its code when even
    /// that cannot be had.
    HRESULT FailWithLastError(const char* fallBack);
    void CleanUp();
    template <typename Step>
    void CleanUpStep(Step&& step);

    const char* m_fileName;
    const char* m_format1;
    const char* m_format2;
    TSimpleString m_treatment; ///< the argument of one treatment
    TSimpleString m_error;
    // Constructed and destroyed with the call; the engine of today needs no texts in them.
    THashtableTss<TSimpleString> m_inputTexts;
    THashtableTss<TSimpleString> m_outputTexts;
    ComText m_clientName;
    ComText m_everything;
    ComPointer<IFmtRun> m_run;
    ComPointer<IFmtWork> m_work;
    LONG m_connection = 0;
    LONG m_options = 0;
    SHORT m_treatmentCount = 0;
};

} // namespace amounts
