#pragma once

#include "host/rulebook/csv.h"
#include "host/rulebook/rule_book.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rulebook
{

/// A line that is not imported.
struct RejectedLine
{
    std::size_t line = 0;
    std::string text; ///< as it stands in the file
    std::string reason;
};

/// What a CSV of holders brings to a database.
struct HolderImport
{
    std::string heading;   ///< the first line as it stands
    std::size_t lines = 0; ///< but the heading
    std::vector<Holder>
        holders; ///< as they will be: those who come and those who gain certificates
    std::vector<RejectedLine> rejected;
};

/// Reads lines of holders, a certificate each, against the holders who are there. Holders only come
/// or gain certificates; one line that is rejected rejects all of its holder. Raises host::Refusal
/// for a heading that names no column or a wrong one; `name` is the file's.
HolderImport ReadHolders(std::string_view csv, const std::string& name,
                         const std::vector<Holder>& there);

/// The lines as a file that can be mended and imported: each below a comment with its reason.
std::string RejectsFile(const HolderImport& imported);

} // namespace rulebook
