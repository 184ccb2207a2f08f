#include "engine/run_object.h"

#include "engine/late_binding.h"
#include "engine/parameter_text.h"
#include "engine/work_object.h"
#include "port/cancellation.h"
#include "support/codepage.h"
#include "support/format.h"

#include <atomic>
#include <exception>
#include <limits>
#include <new>
#include <string_view>
#include <vector>

namespace engine
{

namespace
{

constexpr const char* kKnownWorks =
    "ISO20022/pain.001, ISO20022/pain.008, CFONB/160, CFONB/320, SWIFT/MT101";

std::wstring_view View(BSTR text)
{
    return text == nullptr ? std::wstring_view() : std::wstring_view(text, SysStringLen(text));
}

// Numbers of connections: from 1 on, 0 and below are none.
LONG NextConnection()
{
    static std::atomic<unsigned long> last{0};
    constexpr auto kMost = static_cast<unsigned long>(std::numeric_limits<LONG>::max());
    return static_cast<LONG>(last++ % kMost) + 1;
}

} // namespace

bool RunObject::Implements(REFIID iid) const
{
    return IsEqualIID(iid, amounts::kRunInterface) || DispatchObject::Implements(iid);
}

const port::DispatchInterface& RunObject::Operations() const
{
    return RunOperations();
}

void RunObject::Remember(FailureNumber number, const char* text) noexcept
{
    m_errorNumber = number;
    try
    {
        m_errorText = text;
    }
    catch (const std::bad_alloc&)
    {
        m_errorText.clear();
    }
}

// No exception leaves an operation: the caller may have been built by another compiler.
template <typename Action>
HRESULT RunObject::Guard(Action&& action)
{
    // The XML library would keep what it holds if the thread ended inside it.
    const port::CancellationHold hold;
    Remember(FailureNumber::None, "");
    try
    {
        action();
        return S_OK;
    }
    catch (const Failure& failure)
    {
        Remember(failure.Number(), failure.Text().c_str());
        return E_FAIL;
    }
    catch (const std::bad_alloc&)
    {
        Remember(FailureNumber::OutOfMemory, "Not enough memory");
        return E_OUTOFMEMORY;
    }
    catch (const std::exception& raised)
    {
        Remember(FailureNumber::Unexpected, raised.what());
        return E_UNEXPECTED;
    }
}

void RunObject::RequireConnection(LONG connection) const
{
    if (m_connection == 0 || connection != m_connection)
    {
        throw Failure(FailureNumber::NotConnected,
                      support::FormatA("Connection %d is not open", static_cast<int>(connection)));
    }
}

WorkObject& RunObject::RequireWork(amounts::IFmtWork* work)
{
    WorkObject* const own = WorkObject::Of(work);
    if (own == nullptr)
    {
        throw Failure(FailureNumber::UnknownWork, "The work object is none of this engine's");
    }
    return *own;
}

HRESULT RunObject::FMTConnect(BSTR client, LONG* connection)
{
    if (connection == nullptr)
    {
        return E_POINTER;
    }
    *connection = 0;
    return Guard(
        [&]
        {
            if (View(client).empty())
            {
                throw Failure(FailureNumber::NotConnected, "A client without a name");
            }
            if (m_connection != 0)
            {
                throw Failure(FailureNumber::NotConnected, "This object is connected already");
            }
            m_connection = NextConnection();
            *connection = m_connection;
        });
}

HRESULT RunObject::FMTDisconnect(LONG connection, LONG* status)
{
    if (status == nullptr)
    {
        return E_POINTER;
    }
    const HRESULT result = Guard(
        [&]
        {
            RequireConnection(connection);
            m_connection = 0;
        });
    *status = SUCCEEDED(result) ? 1 : 0;
    return result;
}

HRESULT RunObject::FMTGetWorkDescr(LONG connection, BSTR format1, BSTR format2,
                                   amounts::IFmtWork* work, LONG* found)
{
    if (found == nullptr)
    {
        return E_POINTER;
    }
    *found = 0;
    return Guard(
        [&]
        {
            RequireConnection(connection);
            WorkObject& own = RequireWork(work);
            const std::string first = support::NarrowFromWide(View(format1));
            const std::string second = support::NarrowFromWide(View(format2));
            Work kind{};
            if (FindWork(first, second, kind))
            {
                own.Describe(kind);
                *found = 1;
                return;
            }
            Remember(FailureNumber::UnknownWork,
                     support::FormatA("No conversion %s/%s; there are %s", first.c_str(),
                                      second.c_str(), kKnownWorks)
                         .c_str());
        });
}

void RunObject::Execute(const WorkObject& work, BSTR parameters)
{
    if (!work.GetWork().has_value())
    {
        throw Failure(FailureNumber::UnknownWork, "The work object describes no work");
    }
    const std::vector<Treatment> treatments = ReadParameterText(View(parameters));
    if (treatments.size() != static_cast<std::size_t>(work.TreatmentCount()))
    {
        throw Failure(FailureNumber::BadParameters,
                      support::FormatA("Work parameters for %u treatments instead of %d",
                                       static_cast<unsigned int>(treatments.size()),
                                       static_cast<int>(work.TreatmentCount())));
    }
    const ConversionMode mode = (work.GetOptions() & amounts::kCheckOnly) != 0
                                    ? ConversionMode::CheckOnly
                                    : ConversionMode::WriteWorkFiles;
    for (const Treatment& treatment : treatments)
    {
        Convert(*work.GetWork(), treatment.orderFile, treatment.stem, mode);
    }
}

HRESULT RunObject::FMTWorkExec(LONG connection, amounts::IFmtWork* work, BSTR parameters,
                               BSTR /*second*/, SHORT* error, LONG* success)
{
    if (error == nullptr || success == nullptr)
    {
        return E_POINTER;
    }
    const HRESULT result = Guard(
        [&]
        {
            RequireConnection(connection);
            Execute(RequireWork(work), parameters);
        });
    *success = SUCCEEDED(result) ? 1 : 0;
    *error = static_cast<SHORT>(m_errorNumber);
    return S_OK;
}

HRESULT RunObject::FMTGetLastError(BSTR* text, LONG* reserved, LONG* code)
{
    if (text == nullptr || reserved == nullptr || code == nullptr)
    {
        return E_POINTER;
    }
    *text = nullptr;
    *reserved = 0;
    *code = static_cast<LONG>(m_errorNumber);
    try
    {
        const std::wstring wide = support::WideFromNarrow(std::string_view(m_errorText));
        *text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    }
    catch (const std::bad_alloc&)
    {
        // Told by the null text.
    }
    return *text == nullptr ? E_OUTOFMEMORY : S_OK;
}

} // namespace engine
