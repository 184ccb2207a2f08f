#pragma once

#include <cstddef>
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
    std::string orders; ///< how many the order file holds; empty when it is not told
    std::string total;  ///< their sum; empty when it is not told
    std::string document;
};

/// The status reports below `<store>/<service>/<partner>/`, the newest first. Only where they lie
/// is held; each is read when it is asked for.
class ReportStore
{
public:
    /// `folder` is Windows-1252; one that is not there is empty. Raises Refusal when it cannot be
    /// read.
    explicit ReportStore(const std::string& folder);

    std::size_t Count() const noexcept { return m_places.size(); }

    /// Path, service, partner and identifier, without opening the file.
    StoredReport Place(std::size_t index) const;
    /// Adds what the file says of itself. False when it has gone meanwhile, and when it cannot be
    /// read, which a warning tells with its cause.
    [[nodiscard]] static bool Read(StoredReport& report);

private:
    struct Folder
    {
        std::string service; ///< texts in Windows-1252
        std::string partner;
        std::string path;
    };
    struct FilePlace
    {
        long long fileId;
        std::size_t folder;
    };

    void AddFolder(const Folder& folder);

    std::vector<Folder> m_folders;
    std::vector<FilePlace> m_places;
};

/// What lies at the path of a report. Others may put files there, so that no link is followed and
/// nothing is waited for.
struct ReportFile
{
    std::optional<std::string> bytes;
    std::string fault; ///< why there are none; empty as well when nothing lies there
};

/// `path` is Windows-1252.
ReportFile ReadReportFile(const std::string& path);

/// Fills what the document says of itself. The writer escapes nothing, so an element's value is
/// what stands between its tags, as it is.
void ReadReportDocument(StoredReport& report);

} // namespace host
