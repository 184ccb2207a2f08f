#include "tests/model/plain_lookups.h"

namespace model
{

namespace
{

constexpr std::size_t kBuffer = 255;

/// The value that LOWER(CN) is compared with; nothing when the statement is refused.
NullableText Sought(const Text& certificate)
{
    const NullableText value = LiteralValue(certificate);
    return value ? NullableText(AsciiLower(*value)) : std::nullopt;
}

void Refused(Account& account)
{
    account.lookupsComplete = false;
    account.Note(Outcome::LookUpRefused);
}

/// The rows that the next look-up can read before it fails.
std::size_t RowsOfNextLookUp(Account& account)
{
    const std::size_t number = account.lookUps++;
    const Mishaps& mishaps = account.mishaps;
    if (number == mishaps.failedLookUp)
    {
        return mishaps.lookUpRows;
    }
    return mishaps.laterLookUpsFail && number > mishaps.failedLookUp ? 0 : kWhole;
}

/// Whether the step to the row behind `read` others fails.
bool FailsBehind(std::size_t read, std::size_t readable, Account& account)
{
    if (read < readable)
    {
        return false;
    }
    account.lookupsComplete = false;
    return true;
}

void Fill(Holder& holder, const HolderRow& row, const Text& commonName)
{
    holder.firstName = Cut(row.firstName.value_or(Text()), kBuffer);
    holder.lastName = Cut(row.lastName.value_or(Text()), kBuffer);
    holder.certificate = Cut(commonName, kBuffer);
    holder.free = IntegerOf(row.opposition) == 0;
}

bool Complete(const Holder& holder, std::vector<Signer>& signers, Account& account)
{
    bool found = false;
    for (Signer& signer : signers)
    {
        if (!SameCertificateName(holder.certificate, signer.certificate))
        {
            continue;
        }
        if (!signer.firstName.empty())
        {
            account.Trace(L"warning", L"signer already found");
            account.Note(Outcome::WarnAlreadyFound);
            continue;
        }
        signer.firstName = holder.firstName;
        signer.lastName = holder.lastName;
        found = true;
    }
    return found;
}

} // namespace

bool FindSigner(const Tables& tables, Holder& holder, std::vector<Signer>& signers,
                Account& account)
{
    if (signers.empty())
    {
        return false;
    }
    const NullableText huid = LiteralValue(holder.huid);
    std::vector<Text> sought;
    for (const Signer& signer : signers)
    {
        if (const NullableText value = Sought(signer.certificate); value && huid)
        {
            sought.push_back(*value);
        }
        else
        {
            Refused(account);
            return false;
        }
    }
    const std::size_t readable = RowsOfNextLookUp(account);
    std::size_t read = 0;
    bool found = false;
    for (const HolderRow& row : tables.holders)
    {
        for (const CertificateRow& certificate : tables.certificates)
        {
            bool selected = false;
            for (const Text& value : sought)
            {
                selected = selected || AsciiLower(certificate.commonName) == value;
            }
            if (!selected || row.huid != *huid || certificate.huid != row.huid)
            {
                continue;
            }
            // The step behind the row that decides is made too, and may fail.
            if (FailsBehind(read, readable, account) || found)
            {
                return found;
            }
            ++read;
            Fill(holder, row, certificate.commonName);
            found = Complete(holder, signers, account);
        }
    }
    FailsBehind(read, readable, account);
    return found;
}

bool FindNames(const Tables& tables, const Text& certificate, Text& firstName, Text& lastName,
               Account& account)
{
    const NullableText sought = Sought(certificate);
    if (!sought)
    {
        Refused(account);
        return false;
    }
    const std::size_t readable = RowsOfNextLookUp(account);
    std::size_t read = 0;
    bool found = false;
    for (const CertificateRow& row : tables.certificates)
    {
        for (const HolderRow& holder : tables.holders)
        {
            if (holder.huid != row.huid || AsciiLower(row.commonName) != *sought)
            {
                continue;
            }
            if (FailsBehind(read, readable, account))
            {
                return found;
            }
            ++read;
            if (found)
            {
                account.Trace(L"******* WARNING   ", L"#Signers with same certificates");
                account.Note(Outcome::WarnSharedCertificate);
            }
            firstName = Cut(holder.firstName.value_or(Text()), kBuffer);
            lastName = Cut(holder.lastName.value_or(Text()), kBuffer);
            found = true;
        }
    }
    FailsBehind(read, readable, account);
    return found;
}

} // namespace model
