#include "host/com_apartment.h"

#include "host/refusal.h"
#include "support/format.h"

namespace host
{

ComApartment::ComApartment(HRESULT (*initialise)(void*))
{
    const HRESULT result = initialise(nullptr);
    m_isOurs = SUCCEEDED(result);
    // Another kind of apartment serves as well; who opened it closes it.
    if (FAILED(result) && result != RPC_E_CHANGED_MODE)
    {
        throw Refusal(kCouldNotRun, "COM, by which the conversion engine is reached, could not be "
                                    "started on this thread (error " +
                                        ComErrorText(result) +
                                        "). Check the memory of the machine and run it again.");
    }
}

ComApartment::~ComApartment()
{
    if (m_isOurs)
    {
        CoUninitialize();
    }
}

HRESULT ComApartment::Initialise(void* reserved)
{
    return CoInitialize(reserved);
}

std::string ComErrorText(HRESULT result)
{
    return support::FormatA("0x%08X", static_cast<unsigned int>(result));
}

} // namespace host
