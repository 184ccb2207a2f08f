#pragma once

#include <optional>
#include <string>
#include <vector>

namespace host
{

/// One status report of the hand-off store, texts in UTF-8.
struct StoredReport
{
    std::string path;
    std::string service;
    std::string partner;
    long long fileId = 0;
    std::string created; ///< "2026-03-29 14:05:09"
    std::string orderId;
    std::string messageId;
    std::string status;
    std::string reasonCode;
    std::string reasonText;
    std::string document;
};

/// The status reports below `<store>/<service>/<partner>/`, the newest first. `store` is
/// Windows-1252. Raises Refusal when the store cannot be read; one that is not there is empty.
std::vector<StoredReport> ReadReports(const std::string& store);

/// Fills what the document says of itself. The writer escapes nothing, so an element's value is
/// what stands between its tags, as it is.
void ReadReportDocument(StoredReport& report);

} // namespace host
