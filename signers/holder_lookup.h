#pragma once

#include "containers/tarray.h"
#include "signers/signer_info.h"
#include "support/tsimplestring.h"

#include <cstddef>

class CDatabase;

namespace signers
{

/// Every text buffer that the look-ups fill: 255 characters and a terminator.
inline constexpr std::size_t kNameCapacity = 256;

/// What the look-ups need: the session's connection (null: none, every look-up answers 0) and the
/// trace handle.
struct HolderDirectory
{
    CDatabase* database;
    void* trace;
    TSimpleString* problem = nullptr; ///< when given and empty, receives an error's text
    bool* complete = nullptr;         ///< when given, set to false by a look-up that failed
};

/// Looks up who holds a certificate. `firstName` and `lastName` hold 256 characters each and
/// receive the last row's names, cut. 1 when a row was read, else 0. Raises nothing.
int GetSignerNames(const HolderDirectory& directory, const wchar_t* certificateName,
                   wchar_t* firstName, wchar_t* lastName);

/// Looks up whether the holder owns a certificate of the list and completes the entries that match
/// and have no name yet. The outputs are those of the last row read. 1 when an entry was completed,
/// else 0. Raises nothing.
int GetSignerInfos(const HolderDirectory& directory, const char* holderId, int& notOpposition,
                   wchar_t* certificateName, wchar_t* firstName, wchar_t* lastName,
                   TArray<signerInfo>* signers);

} // namespace signers
