#include "signutils/c_results.h"
#include "signutils/c_session.h"

using signutils::GivenTexts;
using signutils::Result;
using signutils::RunCall;
using signutils::TextResult;
using signutils::ThreadError;
using signutils::WithSession;

namespace
{

constexpr std::size_t kNameCapacity = 256;

constexpr SignUtilsHolder kNoHolder = {.size = sizeof(SignUtilsHolder),
                                       .found = 0,
                                       .notOpposition = 0,
                                       .reserved = 0,
                                       .certificate = "",
                                       .firstName = "",
                                       .lastName = ""};

void RequireSigners(const SignUtilsSigners* signers)
{
    if (signers == nullptr)
    {
        signutils::RefuseNull("signers", "the handle of a list of signers");
    }
}

/// Runs `work` on the list and the texts to give out.
template <typename Work>
SignUtilsStatus WithSigners(SignUtilsSigners* signers, const Work& work)
{
    if (signers == nullptr)
    {
        return RunCall(ThreadError(), [&] { RequireSigners(signers); });
    }
    return signutils::RunWithTexts(ThreadError(), *signers,
                                   [&](GivenTexts& texts) { work(signers->list, texts); });
}

} // namespace

SignUtilsStatus SIGNUTILS_CALL SignUtilsGetSignerNames(SignUtilsSession* session,
                                                       const char* certificateName, int32_t* found,
                                                       const char** firstName,
                                                       const char** lastName)
{
    const Result<std::int32_t> given("found", found, 0);
    const TextResult givenFirst("firstName", firstName, "");
    const TextResult givenLast("lastName", lastName, "");
    return WithSession(session,
                       [&](SignUtils& object, GivenTexts& texts)
                       {
                           std::int32_t& foundPlace = given.Place();
                           const char*& firstPlace = givenFirst.Place();
                           const char*& lastPlace = givenLast.Place();
                           std::wstring certificate =
                               signutils::Wide("certificateName", certificateName);

                           wchar_t first[kNameCapacity] = {};
                           wchar_t last[kNameCapacity] = {};
                           const int answer =
                               object.GetSignerNames(certificate.data(), first, last);
                           if (answer == 0)
                           {
                               // A row that could not be read whole is there in part.
                               *first = *last = L'\0';
                           }
                           const char* const keptFirst = texts.KeepWide(first);
                           const char* const keptLast = texts.KeepWide(last);
                           foundPlace = answer;
                           firstPlace = keptFirst;
                           lastPlace = keptLast;
                       });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsGetSignerInfos(SignUtilsSession* session,
                                                       const char* holderId,
                                                       SignUtilsSigners* signers,
                                                       SignUtilsHolder* holder)
{
    const signutils::RecordResult<SignUtilsHolder> given("holder", holder, kNoHolder);
    return WithSession(session,
                       [&](SignUtils& object, GivenTexts& texts)
                       {
                           given.Require();
                           RequireSigners(signers);
                           const std::string identifier = signutils::Narrow("holderId", holderId);

                           wchar_t certificate[kNameCapacity] = {};
                           wchar_t first[kNameCapacity] = {};
                           wchar_t last[kNameCapacity] = {};
                           SignUtilsHolder record = kNoHolder;
                           int notOpposition = 0;
                           record.found =
                               object.GetSignerInfos(identifier.c_str(), notOpposition, certificate,
                                                     first, last, &signers->list);
                           record.notOpposition = notOpposition;
                           record.certificate = texts.KeepWide(certificate);
                           record.firstName = texts.KeepWide(first);
                           record.lastName = texts.KeepWide(last);
                           given.Fill(record);
                       });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSignersCreate(SignUtilsSigners** signers)
{
    const Result<SignUtilsSigners*> made("signers", signers, nullptr);
    return RunCall(ThreadError(),
                   [&]
                   {
                       SignUtilsSigners*& place = made.Place();
                       place = std::make_unique<SignUtilsSigners>().release();
                   });
}

void SIGNUTILS_CALL SignUtilsSignersDestroy(SignUtilsSigners* signers)
{
    const std::unique_ptr<SignUtilsSigners> owner(signers);
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSignersAdd(SignUtilsSigners* signers,
                                                   const char* certificate)
{
    return WithSigners(signers,
                       [&](TArray<signerInfo>& list, GivenTexts&)
                       {
                           const std::wstring name = signutils::Wide("certificate", certificate);
                           signerInfo signer;
                           signer.certificate = name.c_str();
                           list.Add(signer);
                       });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSignersCount(SignUtilsSigners* signers, int32_t* count)
{
    const Result<std::int32_t> given("count", count, 0);
    return WithSigners(signers, [&](const TArray<signerInfo>& list, GivenTexts&)
                       { given.Place() = list.GetCount(); });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSignersGet(SignUtilsSigners* signers, int32_t index,
                                                   const char** certificate, const char** firstName,
                                                   const char** lastName)
{
    const TextResult givenCertificate("certificate", certificate, "");
    const TextResult givenFirst("firstName", firstName, "");
    const TextResult givenLast("lastName", lastName, "");
    return WithSigners(
        signers,
        [&](TArray<signerInfo>& list, GivenTexts& texts)
        {
            const char*& certificatePlace = givenCertificate.Place();
            const char*& firstPlace = givenFirst.Place();
            const char*& lastPlace = givenLast.Place();
            if (index < 0 || index >= list.GetCount())
            {
                signutils::RefuseValue("index", std::to_string(index) + " is none of the " +
                                                    std::to_string(list.GetCount()) +
                                                    " signers, which count from 0.");
            }
            const signerInfo& signer = *list.GetAt(index);
            const char* const keptCertificate = texts.KeepWide(signer.certificate.SafeGetString());
            const char* const keptFirst = texts.KeepWide(signer.firstName.SafeGetString());
            const char* const keptLast = texts.KeepWide(signer.lastName.SafeGetString());
            certificatePlace = keptCertificate;
            firstPlace = keptFirst;
            lastPlace = keptLast;
        });
}
