#pragma once

#include "host/option_values.h"

#include <memory>
#include <string>

namespace batch
{

/// One order file that is to be judged. Texts are UTF-8.
struct Order
{
    std::string key;   ///< names it in the progress journal
    std::string path;  ///< absolute: what history and answers name it by
    std::string fault; ///< why it cannot be judged at all, with the remedy; else empty
    std::shared_ptr<const host::OptionValues> terms; ///< its own; null without
};

} // namespace batch
