#include "engine/work_object.h"

#include "engine/late_binding.h"

namespace engine
{

namespace
{

// Asked for by the engine itself, to tell its own work objects from others.
constexpr IID kOwnWork = {
    0xA07D1F65, 0x0F7A, 0x49AD, {0x8D, 0x93, 0x8A, 0xAF, 0x73, 0xB3, 0x6C, 0xBF}};

} // namespace

bool WorkObject::Implements(REFIID iid) const
{
    return IsEqualIID(iid, amounts::kWorkInterface) || IsEqualIID(iid, kOwnWork) ||
           DispatchObject::Implements(iid);
}

const port::DispatchInterface& WorkObject::Operations() const
{
    return WorkOperations();
}

WorkObject* WorkObject::Of(amounts::IFmtWork* work)
{
    void* own = nullptr;
    if (work == nullptr || FAILED(work->QueryInterface(kOwnWork, &own)))
    {
        return nullptr;
    }
    auto* const object = static_cast<WorkObject*>(static_cast<amounts::IFmtWork*>(own));
    object->Release();
    return object;
}

void WorkObject::Describe(Work work) noexcept
{
    m_work = work;
    m_options = amounts::kCheckOnly;
}

HRESULT WorkObject::FMTGetNbTrt(SHORT* count)
{
    if (count == nullptr)
    {
        return E_POINTER;
    }
    *count = TreatmentCount();
    return S_OK;
}

HRESULT WorkObject::FMTGetOptions(LONG* flags)
{
    if (flags == nullptr)
    {
        return E_POINTER;
    }
    *flags = m_options;
    return S_OK;
}

HRESULT WorkObject::FMTSetOptions(LONG flags)
{
    m_options = flags;
    return S_OK;
}

} // namespace engine
