#include "port/posix/com_apartment.h"

#include "port/com.h"

#include <atomic>

namespace
{

/// What one thread has asked for. A thread that ends without its CoUninitialize calls stays in the
/// process's number, so that modules stay loaded rather than go too early.
struct Apartment
{
    DWORD initialisations = 0;
    DWORD model = 0;
};

thread_local Apartment t_apartment;
std::atomic<DWORD> g_threads = 0;

} // namespace

bool port::ThreadHasApartment()
{
    return t_apartment.initialisations > 0;
}

HRESULT CoInitialize(void* reserved)
{
    return CoInitializeEx(reserved, COINIT_APARTMENTTHREADED);
}

HRESULT CoInitializeEx(void* reserved, DWORD model)
{
    if (reserved != nullptr)
    {
        return E_INVALIDARG;
    }
    // Other bits only ask for ways of working that do not exist here.
    const DWORD kind = model & COINIT_APARTMENTTHREADED;
    if (t_apartment.initialisations == 0)
    {
        t_apartment = {1, kind};
        ++g_threads;
        return S_OK;
    }
    if (t_apartment.model != kind)
    {
        return RPC_E_CHANGED_MODE;
    }
    ++t_apartment.initialisations;
    return S_FALSE;
}

void CoUninitialize()
{
    if (t_apartment.initialisations == 0)
    {
        return;
    }
    if (t_apartment.initialisations == 1 && g_threads.fetch_sub(1) == 1)
    {
        CoFreeUnusedLibraries();
    }
    --t_apartment.initialisations;
}
