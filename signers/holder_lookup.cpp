#include "signers/holder_lookup.h"

#include "database/cdatabase.h"
#include "database/crecordset.h"
#include "database/guard_database.h"
#include "database/literal.h"
#include "signers/holder_statements.h"
#include "support/casefold.h"
#include "support/checked_copy.h"
#include "support/numbers.h"
#include "support/trace.h"

#include <cstddef>
#include <new>
#include <string>
#include <string_view>

namespace signers
{

namespace
{

constexpr int kLevel = 1;
constexpr char kRuler[] = "---------------------------";

void RequireCertificate(const wchar_t* certificateName)
{
    database::RequireWithinLiteral(certificateName, database::kUncut, "certificate name", "OpenW");
}

consteval std::size_t At(std::string_view column)
{
    return database::PositionOf(kHolderColumns, column);
}

const char* TraceNarrowColumn(void* trace, CRecordset& rows, std::size_t column, const char* label)
{
    const char* const value = rows.NarrowText(column);
    TraceValue(trace, label, value, kLevel);
    return value;
}

void CopyWideColumn(void* trace, CRecordset& rows, std::size_t column, const char* label,
                    wchar_t* buffer)
{
    const wchar_t* const value = rows.WideText(column);
    TraceValueUTF8(trace, label, value);
    support::TruncatingCopy(buffer, kNameCapacity, value);
}

// What both look-ups read first of a row.
void ReadHolder(void* trace, CRecordset& rows, wchar_t* firstName, wchar_t* lastName)
{
    TraceNarrowColumn(trace, rows, At("HUID"), "HUID Signer       ");
    CopyWideColumn(trace, rows, At("FNAME"), "HUID FirstName    ", firstName);
    CopyWideColumn(trace, rows, At("LNAME"), "HUID LastName     ", lastName);
}

// What both look-ups read last of a row. Gives the opposition marker.
std::int32_t ReadOpposition(void* trace, CRecordset& rows)
{
    TraceNarrowColumn(trace, rows, At("SERIAL"), "HUID Serial Number");
    return support::ToInt32(TraceNarrowColumn(trace, rows, At("OPPOSITION"), "HUID Is Opposition"));
}

// Completes the entries with this certificate; every one of them, so that a certificate that stands
// twice in the list is taken twice. Returns whether one was completed.
bool CompleteEntries(void* trace, TArray<signerInfo>& signers, int count,
                     const wchar_t* certificateName, const wchar_t* firstName,
                     const wchar_t* lastName)
{
    bool completed = false;
    for (int i = 0; i < count; ++i)
    {
        signerInfo& entry = *signers.GetAt(i);
        if (!support::EqualIgnoringCase(certificateName, entry.certificate.SafeGetString(),
                                        kNameCapacity - 1U))
        {
            continue;
        }
        if (!entry.firstName.IsEmpty())
        {
            TraceValue(trace, "warning", "signer already found", kLevel);
            continue;
        }
        entry.firstName = firstName;
        entry.lastName = lastName;
        completed = true;
    }
    return completed;
}

void Note(const HolderDirectory& directory, const char* text)
{
    TraceValue(directory.trace, "Exception", text, kLevel);
    if (directory.complete != nullptr)
    {
        *directory.complete = false;
    }
    if (directory.problem == nullptr || !directory.problem->IsEmpty())
    {
        return;
    }
    try
    {
        *directory.problem = text;
    }
    catch (const std::bad_alloc&)
    {
        // The trace has it; a look-up raises nothing.
    }
}

} // namespace

int GetSignerNames(const HolderDirectory& directory, const wchar_t* certificateName,
                   wchar_t* firstName, wchar_t* lastName)
{
    if (directory.database == nullptr)
    {
        return 0;
    }
    void* const trace = directory.trace;
    int found = 0;
    database::GuardDatabase(
        [&]
        {
            RequireCertificate(certificateName);
            std::wstring& statement = directory.database->NewStatementText();
            AppendHoldersOfCertificate(statement, certificateName);
            CRecordset rows(*directory.database);
            rows.OpenW(CRecordset::kForwardOnly, statement.c_str(), 0, &kHolderRow);
            for (; !rows.IsEOF(); rows.MoveNext())
            {
                TraceValue(trace, "SIGNER NAME-------", kRuler, kLevel);
                if (found == 1)
                {
                    TraceValue(trace, "******* WARNING   ", "#Signers with same certificates",
                               kLevel);
                }
                ReadHolder(trace, rows, firstName, lastName);
                ReadOpposition(trace, rows);
                found = 1;
            }
            rows.Close();
        },
        [&](const CDBException& raised) { Note(directory, raised.GetText()); },
        [&] { Note(directory, "Unknown from GetSignerNames"); });
    return found;
}

int GetSignerInfos(const HolderDirectory& directory, const char* holderId, int& notOpposition,
                   wchar_t* certificateName, wchar_t* firstName, wchar_t* lastName,
                   TArray<signerInfo>* signers)
{
    if (directory.database == nullptr || signers == nullptr || signers->GetCount() == 0)
    {
        return 0;
    }
    void* const trace = directory.trace;
    const int count = signers->GetCount();
    int found = 0;
    database::GuardDatabase(
        [&]
        {
            database::RequireWithinLiteral(holderId, database::kUncut, "holder identifier",
                                           "OpenW");
            for (int i = 0; i < count; ++i)
            {
                RequireCertificate(signers->GetAt(i)->certificate.SafeGetString());
            }
            std::wstring& statement = directory.database->NewStatementText();
            AppendCertificatesOfHolder(statement, holderId, *signers, count);
            CRecordset rows(*directory.database);
            rows.OpenW(CRecordset::kForwardOnly, statement.c_str(), 0, &kHolderRow);
            for (; !rows.IsEOF() && found == 0; rows.MoveNext())
            {
                TraceValue(trace, "SIGNER INFO-------", kRuler, kLevel);
                ReadHolder(trace, rows, firstName, lastName);
                CopyWideColumn(trace, rows, At("CN"), "HUID Certificate  ", certificateName);
                notOpposition = ReadOpposition(trace, rows) == 0 ? 1 : 0;
                if (CompleteEntries(trace, *signers, count, certificateName, firstName, lastName))
                {
                    found = 1;
                }
            }
            rows.Close();
        },
        [&](const CDBException& raised) { Note(directory, raised.GetText()); },
        [&] { Note(directory, "Unknown from GetSignerInfos"); });
    return found;
}

} // namespace signers
