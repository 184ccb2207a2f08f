#include "port/com.h"
#include "services/system_error.h"
#include "signutils/c_results.h"
#include "signutils/c_session.h"
#include "support/format.h"
#include "support/protocol_catalogue.h"
#include "support/trace.h"

using signutils::CallRefused;
using signutils::GivenTexts;
using signutils::Result;
using signutils::RunCall;
using signutils::TextResult;
using signutils::ThreadError;
using signutils::WithSession;

namespace
{

constexpr signutils::FieldLimit kProtocolName = {63, "Give a shorter name."};

DWORD ApartmentOf(std::int32_t apartment)
{
    switch (apartment)
    {
    case SIGNUTILS_COM_MULTITHREADED:
        return COINIT_MULTITHREADED;
    case SIGNUTILS_COM_SINGLE_THREADED:
        return COINIT_APARTMENTTHREADED;
    default:
        signutils::RefuseValue("apartment", std::to_string(apartment) +
                                                " is unknown. Give SIGNUTILS_COM_MULTITHREADED or "
                                                "SIGNUTILS_COM_SINGLE_THREADED.");
    }
}

void InitializeCom(std::int32_t apartment)
{
    const HRESULT result = CoInitializeEx(nullptr, ApartmentOf(apartment));
    if (result == RPC_E_CHANGED_MODE)
    {
        throw CallRefused{SIGNUTILS_OTHER_APARTMENT,
                          "This thread has COM already, in the other kind of apartment. It can be "
                          "used as it is."};
    }
    if (FAILED(result))
    {
        throw CallRefused{SIGNUTILS_FAILED,
                          support::FormatA("COM could not be initialised (error 0x%08X).",
                                           static_cast<unsigned>(result))};
    }
}

[[noreturn]] void FailToOpenTrace()
{
    throw CallRefused{SIGNUTILS_FAILED, "path: the trace file cannot be opened for appending: " +
                                            services::SystemErrorText(GetLastError()) +
                                            ". Check that its folder exists and is writable."};
}

} // namespace

SignUtilsStatus SIGNUTILS_CALL SignUtilsComInitialize(int32_t apartment)
{
    return RunCall(ThreadError(), [=] { InitializeCom(apartment); });
}

void SIGNUTILS_CALL SignUtilsComUninitialize()
{
    CoUninitialize();
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsTraceOpen(const char* path, SignUtilsTrace** trace)
{
    const Result<SignUtilsTrace*> opened("trace", trace, nullptr);
    return RunCall(ThreadError(),
                   [&]
                   {
                       SignUtilsTrace*& place = opened.Place();
                       void* const handle = TraceOpen(signutils::Narrow("path", path).c_str());
                       if (!TraceIsUsable(handle))
                       {
                           FailToOpenTrace();
                       }
                       place = static_cast<SignUtilsTrace*>(handle);
                   });
}

void SIGNUTILS_CALL SignUtilsTraceClose(SignUtilsTrace* trace)
{
    TraceClose(trace);
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsRegisterProtocol(uint32_t protocol, const char* longName)
{
    return RunCall(
        ThreadError(),
        [=]
        {
            TProtocolCatalogue::Register(
                protocol,
                signutils::OptionalNarrowUpTo("longName", longName, kProtocolName).c_str());
        });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsGetProtocolName(SignUtilsSession* session,
                                                        uint32_t protocol, const char** longName)
{
    const TextResult given("longName", longName, "");
    return WithSession(session,
                       [&](const SignUtils&, GivenTexts& texts)
                       {
                           const char*& place = given.Place();
                           place = texts.KeepNarrow(
                               TProtocolCatalogue().GetProtocolLongName(protocol).SafeGetString());
                       });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsGetProtocolAt(SignUtilsSession* session, int32_t index,
                                                      int32_t* found, uint32_t* protocol,
                                                      const char** longName)
{
    const Result<std::int32_t> given("found", found, 0);
    const Result<std::uint32_t> givenNumber("protocol", protocol, 0);
    const TextResult givenName("longName", longName, "");
    return WithSession(session,
                       [&](const SignUtils&, GivenTexts& texts)
                       {
                           std::int32_t& foundPlace = given.Place();
                           std::uint32_t& numberPlace = givenNumber.Place();
                           const char*& namePlace = givenName.Place();
                           unsigned long number = 0;
                           TSimpleString name;
                           if (!TProtocolCatalogue::GetAt(index, number, name))
                           {
                               return;
                           }
                           namePlace = texts.KeepNarrow(name.SafeGetString());
                           numberPlace = static_cast<std::uint32_t>(number);
                           foundPlace = 1;
                       });
}
