#pragma once

#include <string>
#include <vector>

namespace testing_support
{

/// What receivers of pain.002.001.02 demand of a report as this system writes it: well-formed in
/// the encoding that it declares, the elements in their order and number, the texts within their
/// lengths and forms. One line for each finding, none for a valid report.
std::vector<std::string> FindReportFaults(const std::string& document);

} // namespace testing_support
