#pragma once

#include "services/file_identifiers.h"
#include "services/hand_off_error.h"

#include <cstdint>
#include <optional>
#include <string>

namespace services
{

/// What is filed, under names that IsStoreName accepts.
struct HandOffItem
{
    std::string service;
    std::string partner;
    std::string extension;
    std::string sourcePath;
};

/// The folder in which handed-on files lie: `<store>/<service>/<partner>/<fileId>.<extension>`.
class HandOffStore
{
public:
    /// Creates the folder, for its owner only, where it is missing. Raises TPipeException when
    /// there is no such folder to use.
    explicit HandOffStore(std::string folder);

    /// Copies the file into the store and says under which identifier. It appears under its name
    /// when it is whole and on the disk, or not at all. Raises TPipeException when the store gives
    /// no identifier.
    std::optional<HandOffFailure> File(const HandOffItem& item, std::uint32_t& fileId);

private:
    std::optional<HandOffFailure> MakeFolder(const HandOffItem& item, std::string& folder) const;

    std::string m_folder;
    FileIdentifiers m_identifiers;
};

} // namespace services
