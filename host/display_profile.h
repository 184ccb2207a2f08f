#pragma once

#include "host/order_format.h"

#include <string>

namespace host
{

/// The sections of CtlVEU.INI that one order display is made from. A section may stand twice: for
/// all formats ("order") and for one ("order ISO20022/pain.008"), which then counts alone.
struct DisplayProfile
{
    std::string path; ///< of the profile file, UTF-8
    std::string remittance;
    std::string order;
    std::string remittanceDisplay;
    std::string orderDisplay;
};

/// Finds the sections for a format. Raises a "could not run" Refusal that names the path and the
/// remedy when the file or a section is missing.
DisplayProfile FindDisplayProfile(const OrderFormat& format);

} // namespace host
