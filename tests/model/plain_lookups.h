#pragma once

#include "tests/model/expected.h"
#include "tests/model/mishaps.h"
#include "tests/model/plain_texts.h"
#include "tests/model/tables.h"

#include <vector>

namespace model
{

struct Signer
{
    Text certificate;
    Text lastName;
    Text firstName;
};

/// One of a rule's two holders, as a look-up fills it.
struct Holder
{
    Text huid;
    bool free = false; ///< not in opposition
    Text certificate;
    Text lastName;
    Text firstName;
};

/// What one run of the rules tells besides its decisions.
struct Account
{
    Text journal;                   ///< a line for each text, ended by CR LF
    std::vector<std::string> trace; ///< the findings that a trace shows, in UTF-8
    Outcomes outcomes;
    bool lookupsComplete = true;
    Mishaps mishaps;
    std::size_t lookUps = 0; ///< begun so far

    void Note(Outcome outcome) { outcomes.set(static_cast<std::size_t>(outcome)); }
    void Trace(const Text& label, const Text& value)
    {
        trace.push_back(Utf8Of(label + L": " + value));
    }
};

/// Whether the holder owns one of the signers' certificates that no holder took so far.
bool FindSigner(const Tables& tables, Holder& holder, std::vector<Signer>& signers,
                Account& account);

/// Who holds a certificate: the last of several.
bool FindNames(const Tables& tables, const Text& certificate, Text& firstName, Text& lastName,
               Account& account);

} // namespace model
