#pragma once

#include <string>
#include <vector>

namespace host
{

/// The parts of an audit event's text, UTF-8, blanks at their ends taken off.
struct AuditEvent
{
    std::string mode;
    std::string protocol;
    std::string partner;
    std::string client;
    std::string service;
    std::string fileId;
    std::string orderId;
    std::string message; ///< all behind the header; the whole text when it has none
};

/// Takes the text of an event of source RULSGN apart.
AuditEvent ReadAuditText(const std::string& text);

/// The lines of a text without their line ends, empty ones left out.
std::vector<std::string> LinesOf(const std::string& text);

/// The headings with which the event of a check begins.
inline constexpr const char* kCheckHeading = "CHECK SIGNATURES RULES ";

} // namespace host
