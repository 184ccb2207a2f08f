#include "amounts/engine_session.h"

#include "database/guard_database.h"
#include "port/cancellation.h"
#include "support/codepage.h"
#include "support/format.h"
#include "support/odbc_errors.h"

#include <new>
#include <string>

namespace amounts
{

namespace
{

// In-process, local and remote server together.
constexpr DWORD kAnyServer = 21;
constexpr std::uint32_t kDatabaseErrorNumber = 0xA45001A;
constexpr const char* kErrorTag = "ExecWorkFmt";
constexpr const wchar_t* kTreatmentSeparator = L" | ";

TSimpleString TextOf(const CDBException& raised)
{
    tagODBCERROR error{};
    ODBC_PrepareStrucError(error, kErrorTag);
    TSimpleString native;
    native.GenerateString("%d", raised.GetNativeError());
    return ODBC_FormatStrucError(error, kDatabaseErrorNumber, raised.GetReturnCode(),
                                 native.SafeGetString(), raised.GetText());
}

} // namespace

EngineSession::EngineSession(const char* fileName, const char* format1, const char* format2)
    : m_fileName(fileName), m_format1(format1), m_format2(format2), m_inputTexts(kBucketCount),
      m_outputTexts(kBucketCount)
{
}

EngineSession::~EngineSession()
{
    CleanUp();
}

bool EngineSession::Convert()
{
    HRESULT status = E_FAIL;
    database::GuardDatabase(
        [&] { status = RunSteps(); },
        [&](const CDBException& raised)
        { m_error.GenerateString("DataBase exception raised: %s", TextOf(raised)); },
        [&] { m_error = "Unknown exception raised"; });
    CleanUp();
    return SUCCEEDED(status);
}

HRESULT EngineSession::RunSteps()
{
    m_treatment.GenerateString("\"%s\" \"%s.veu\" ;", m_fileName, m_fileName);
    m_clientName.Assign(L"QRV");
    // No call takes this text; without memory for it the engine is not started all the same.
    m_everything.Assign(L"*");
    HRESULT status = S_OK;
    using Step = HRESULT (EngineSession::*)();
    for (const Step step :
         {&EngineSession::CreateRun, &EngineSession::Connect, &EngineSession::CreateWork,
          &EngineSession::Describe, &EngineSession::CountTreatments, &EngineSession::Execute})
    {
        status = SUCCEEDED(status) ? (this->*step)() : status;
    }
    return status;
}

HRESULT EngineSession::CreateRun()
{
    const HRESULT made = m_run.Create(kRunClass, kAnyServer, kRunInterface);
    if (SUCCEEDED(made) && !m_run.IsNull())
    {
        return S_OK;
    }
    // COM does not set the last error: what is shown is left over from earlier calls.
    m_error.GenerateString("Initialize CFFmtRun Error : %d", static_cast<int>(GetLastError()));
    return E_FAIL;
}

HRESULT EngineSession::Connect()
{
    constexpr LONG kNoConnection = -1;
    const HRESULT connected = m_run->FMTConnect(m_clientName.Get(), &m_connection);
    if (SUCCEEDED(connected) && m_connection != 0 && m_connection != kNoConnection)
    {
        return S_OK;
    }
    return FailWithLastError("FMTConnect Error : %d");
}

HRESULT EngineSession::CreateWork()
{
    if (SUCCEEDED(m_work.Create(kWorkClass, kAnyServer, kWorkInterface)))
    {
        return S_OK;
    }
    m_error = "Initialize Work Object";
    return E_FAIL;
}

HRESULT EngineSession::Describe()
{
    const ComText format1(support::WideFromNarrow(m_format1));
    const ComText format2(support::WideFromNarrow(m_format2));
    LONG found = 0;
    if (FAILED(m_run->FMTGetWorkDescr(m_connection, format1.Get(), format2.Get(), m_work.Get(),
                                      &found)))
    {
        return FailWithLastError("FMTGetWorkDescr Error : %d");
    }
    if (found == 0 || m_work.IsNull())
    {
        // The text of the execution, on purpose.
        return FailWithLastError("FMTWorkExec Error : %d");
    }
    return S_OK;
}

HRESULT EngineSession::CountTreatments()
{
    m_work->FMTGetOptions(&m_options);
    if (FAILED(m_work->FMTGetNbTrt(&m_treatmentCount)))
    {
        return FailWithLastError("FMTGetNbTrt Error : %d");
    }
    return S_OK;
}

std::wstring EngineSession::ParameterText() const
{
    const std::wstring argument = support::WideFromNarrow(m_treatment.SafeGetString());
    std::wstring text;
    for (SHORT i = 0; i < m_treatmentCount; ++i)
    {
        text += i == 0 ? L"" : kTreatmentSeparator;
        text += argument;
    }
    return text;
}

HRESULT EngineSession::Execute()
{
    const ComText parameters(ParameterText());
    const ComText second(L"");
    m_work->FMTSetOptions(m_options & ~kCheckOnly);
    SHORT error = 0;
    LONG success = 0;
    const HRESULT executed = m_run->FMTWorkExec(m_connection, m_work.Get(), parameters.Get(),
                                                second.Get(), &error, &success);
    if (SUCCEEDED(executed) && success != 0)
    {
        return S_OK;
    }
    const int errorNumber = error;
    ComText text;
    LONG reserved = 0;
    LONG code = 0;
    if (FAILED(m_run->FMTGetLastError(text.Receive(), &reserved, &code)))
    {
        m_error.GenerateString("FMTWorkExec Error : %d", errorNumber);
        return E_FAIL;
    }
    TSimpleString told;
    told.FromWide(text.Get());
    m_error.GenerateString("%s n\xB0%d ", told, errorNumber);
    return E_FAIL;
}

HRESULT EngineSession::FailWithLastError(const char* fallBack)
{
    ComText text;
    LONG reserved = 0;
    LONG code = 0;
    if (FAILED(m_run->FMTGetLastError(text.Receive(), &reserved, &code)))
    {
        m_error.GenerateString(fallBack, static_cast<int>(code));
    }
    else
    {
        m_error.FromWide(text.Get());
    }
    return E_FAIL;
}

// One step that raises must not keep the others from being taken, not even without memory to tell:
// an object left for the destructors of the members would raise in there.
template <typename Step>
void EngineSession::CleanUpStep(Step&& step)
{
    const auto tell = [this]
    {
        try
        {
            if (m_error.IsEmpty())
            {
                m_error = "Unknown exception raised at the end";
            }
        }
        catch (const std::bad_alloc&)
        {
            // The result has to tell alone.
        }
    };
    database::GuardDatabase(
        step, [&](const CDBException&) { tell(); }, tell);
}

void EngineSession::CleanUp()
{
    // Ending the thread here would leave the engine's connection open.
    const port::CancellationHold hold;
    CleanUpStep([this] { m_work.Release(); });
    CleanUpStep(
        [this]
        {
            // A connection of -1 was refused by Connect and is closed all the same.
            if (const LONG connection = m_connection; !m_run.IsNull() && connection != 0)
            {
                m_connection = 0;
                LONG ignored = 0;
                m_run->FMTDisconnect(connection, &ignored);
            }
        });
    CleanUpStep([this] { m_run.Release(); });
}

} // namespace amounts
