#pragma once

#include "engine/mt_fields.h"

#include <string>

namespace engine
{

/// What an ordering customer or beneficiary field holds.
struct MtParty
{
    std::string account; ///< or, in option F, the identifier that stands in its place
    std::string name;    ///< or the identifier code of options A and G
};

/// "/account" on the first line, then a name or an identifier; numbered lines "1/NAME" in option F.
MtParty ReadParty(const MtField& field);

/// What a bank field holds.
struct MtBank
{
    std::string code; ///< identifier code, else the clearing code or account of its first line
    std::string name; ///< option D
};

MtBank ReadBank(const MtField& field);

/// All lines, a blank between them.
std::string JoinLines(const MtField& field);

} // namespace engine
