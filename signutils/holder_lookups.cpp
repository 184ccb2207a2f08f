#include "signutils/signutils.h"

#include "containers/shared_ref_impl.h"
#include "database/cdatabase.h"
#include "signers/holder_lookup.h"

int SignUtils::GetSignerNames(wchar_t* certificateName, wchar_t* firstName, wchar_t* lastName)
{
    return signers::GetSignerNames({m_database.Get(), m_trace}, certificateName, firstName,
                                   lastName);
}

int SignUtils::GetSignerInfos(const char* holderId, int& notOpposition, wchar_t* certificateName,
                              wchar_t* firstName, wchar_t* lastName, TArray<signerInfo>* signers)
{
    return signers::GetSignerInfos({m_database.Get(), m_trace}, holderId, notOpposition,
                                   certificateName, firstName, lastName, signers);
}
