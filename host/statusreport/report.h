#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace statusreport
{

/// What is wrong with a report, and where.
struct Fault
{
    std::size_t line = 0;
    std::string element; ///< with those around it: "GrpHdr/MsgId"
    std::string problem; ///< what is wrong and what to do, without a final stop
};

/// One reason that a report gives.
struct Reason
{
    std::string code; ///< may be empty
    std::vector<std::string> texts;
};

/// A status report as it was read; texts are UTF-8 and empty where it lacks them.
struct Report
{
    std::string messageId;
    std::string created;
    std::string issuer;
    std::string orderId;
    std::string messageName;
    std::string orders;
    std::string total;
    std::string status;
    std::vector<Reason> reasons;
    std::vector<Fault> faults;
    std::vector<std::string> unread; ///< elements of the message whose content was not looked into
};

/// Reads a pain.002.001.02 report of any size that fits memory and looks for what its receivers
/// would refuse: form of the XML, namespace, elements in their order and number, texts within their
/// lengths and forms. Document types are refused. What a damaged report still tells is told.
Report ReadReport(const std::string& document);

} // namespace statusreport
