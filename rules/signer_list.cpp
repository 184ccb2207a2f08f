#include "rules/signer_list.h"

#include "support/trace.h"

#include <cwchar>

namespace rules
{

namespace
{

constexpr int kBothEnds = 3;

void AppendSigner(void* trace, TSimpleStringW token, TArray<signerInfo>& signers)
{
    TraceValueUTF8(trace, "#Signer", token.SafeGetString());
    token.Trim(kBothEnds);
    if (token.IsEmpty())
    {
        return;
    }
    signerInfo signer;
    signer.certificate = token;
    signers.Add(signer);
}

} // namespace

void AppendSigners(void* trace, const wchar_t* signerList, TArray<signerInfo>& signers)
{
    TimeTraceDump(trace, "SIGNERS", 0, 0);
    const wchar_t* rest = signerList == nullptr ? L"" : signerList;
    while (*rest != L'\0')
    {
        const std::size_t length = std::wcscspn(rest, L";");
        if (length > 0)
        {
            AppendSigner(trace, TSimpleStringW(rest, length), signers);
        }
        rest += length;
        rest += std::wcsspn(rest, L";");
    }
}

} // namespace rules
