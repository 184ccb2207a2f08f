#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace services
{

/// Gives the files of one hand-off store their identifiers: 1 and up to 2147483647, since hosts
/// show them as signed numbers. Rising and never the same twice, whatever process asks.
///
/// The last one given stands in the file "identifiers.counter" of the store, replaced under a lock
/// on "identifiers.lock". When the counter is lost or damaged, counting goes on behind the largest
/// identifier that a file of the store bears.
class FileIdentifiers
{
public:
    /// `store` exists.
    explicit FileIdentifiers(std::string store) : m_store(std::move(store)) {}

    /// Nothing when the last one has been given. Raises TPipeException when the counter cannot be
    /// read, locked or written.
    std::optional<std::uint32_t> Next();

    /// As Next, but behind every file of the store whatever the counter says: for a counter that
    /// proved to be behind its files, as after a restore.
    std::optional<std::uint32_t> NextBehindFiles();

private:
    std::optional<std::uint32_t> Give(bool behindFiles);
    std::optional<std::uint32_t> ReadCounter() const;
    std::uint32_t LargestInStore() const;
    std::uint32_t LargestInService(const std::string& folder) const;

    std::string m_store;
};

} // namespace services
