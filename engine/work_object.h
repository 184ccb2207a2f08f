#pragma once

#include "amounts/engine_interfaces.h"
#include "engine/com_object.h"
#include "engine/convert.h"

#include <optional>

namespace engine
{

/// The description of one work. Empty until the run object fills it.
class WorkObject final : public DispatchObject<amounts::IFmtWork>
{
public:
    /// One treatment as soon as the work is described: the conversion of one order file.
    HRESULT STDMETHODCALLTYPE FMTGetNbTrt(SHORT* count) override;
    HRESULT STDMETHODCALLTYPE FMTGetOptions(LONG* flags) override;
    HRESULT STDMETHODCALLTYPE FMTSetOptions(LONG flags) override;

    /// A described work starts with amounts::kCheckOnly set: what writes beside an order file is
    /// asked for.
    void Describe(Work work) noexcept;
    const std::optional<Work>& GetWork() const noexcept { return m_work; }
    LONG GetOptions() const noexcept { return m_options; }
    SHORT TreatmentCount() const noexcept { return m_work.has_value() ? SHORT{1} : SHORT{0}; }

    /// The object behind an interface pointer, null when it is none of this engine's. The
    /// interface's reference keeps it.
    static WorkObject* Of(amounts::IFmtWork* work);

protected:
    bool Implements(REFIID iid) const override;
    const port::DispatchInterface& Operations() const override;

private:
    std::optional<Work> m_work;
    LONG m_options = 0;
};

} // namespace engine
