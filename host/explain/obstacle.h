#pragma once

#include "host/explain/words.h"
#include "host/refusal.h"
#include "host/scratch/interruption.h"

#include <string>
#include <utility>

namespace explain
{

/// Why a search on a copy came to no end; empty when it did. What was decided stands, and is told,
/// whatever becomes of the search.
template <typename Search>
std::string ObstacleTo(Search&& search)
{
    try
    {
        std::forward<Search>(search)();
        return {};
    }
    catch (const scratch::Interrupted&)
    {
        return InterruptedSearch(support::MessageLanguage());
    }
    catch (const host::Refusal& refusal)
    {
        return refusal.what();
    }
}

} // namespace explain
