// The holder look-ups, answered from tables in memory: this program links them in the place of
// those that ask a database, so that millions of cells can be judged in minutes. The real ones are
// compared by the random scenarios.

#include "tests/model/memory_lookups.h"

#include "signers/holder_lookup.h"
#include "tests/model/plain_lookups.h"

#include <cwchar>

namespace
{

const model::Tables* g_tables = nullptr;

void CopyOut(const model::Text& text, wchar_t* buffer)
{
    std::wcscpy(buffer, text.c_str());
}

} // namespace

namespace model
{

void AnswerLookupsFrom(const Tables& tables)
{
    g_tables = &tables;
}

} // namespace model

namespace signers
{

int GetSignerNames(const HolderDirectory&, const wchar_t* certificateName, wchar_t* firstName,
                   wchar_t* lastName)
{
    model::Account ignored;
    model::Text first;
    model::Text last;
    if (!model::FindNames(*g_tables, certificateName, first, last, ignored))
    {
        return 0;
    }
    CopyOut(first, firstName);
    CopyOut(last, lastName);
    return 1;
}

int GetSignerInfos(const HolderDirectory&, const char* holderId, int& notOpposition,
                   wchar_t* certificateName, wchar_t* firstName, wchar_t* lastName,
                   TArray<signerInfo>* signers)
{
    model::Account ignored;
    model::Holder holder;
    holder.huid = model::WideOf(holderId);
    std::vector<model::Signer> list;
    for (int index = 0; index < signers->GetCount(); ++index)
    {
        const signerInfo& entry = *signers->GetAt(index);
        list.push_back({entry.certificate.SafeGetString(), entry.lastName.SafeGetString(),
                        entry.firstName.SafeGetString()});
    }
    const bool found = model::FindSigner(*g_tables, holder, list, ignored);
    for (int index = 0; index < signers->GetCount(); ++index)
    {
        signerInfo& entry = *signers->GetAt(index);
        const model::Signer& taken = list[static_cast<std::size_t>(index)];
        entry.lastName = taken.lastName.c_str();
        entry.firstName = taken.firstName.c_str();
    }
    notOpposition = holder.free ? 1 : 0;
    CopyOut(holder.certificate, certificateName);
    CopyOut(holder.firstName, firstName);
    CopyOut(holder.lastName, lastName);
    return found ? 1 : 0;
}

} // namespace signers
