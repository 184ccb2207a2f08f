#pragma once

#include "schema/scripts.h"

#include <stdexcept>
#include <string>
#include <vector>

class CDatabase;

namespace schema
{

/// Why a database cannot be installed into; the text is for the administrator, in ASCII.
class SchemaError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// What Install found and did.
struct InstallReport
{
    int foundVersion = 0;                   ///< 0: no version was recorded
    int version = 0;                        ///< after the installation
    std::vector<std::string> createdTables; ///< in alphabetical order
    std::vector<std::string> takenTables;   ///< ours by name, there before any version was recorded

    /// One line in plain words.
    std::string Text() const;
};

/// What InstallSample found and did; a holder counts with its certificates, a contract with its
/// rules.
struct SampleReport
{
    int added = 0;
    int alreadyThere = 0;

    std::string Text() const;
};

/// The version that this build installs, the same on every product.
int CurrentVersion();

/// The version recorded in the database, 0 when there is none. Raises CDBException*.
int InstalledVersion(CDatabase& database);

/// Brings an open database to the current version. Drops nothing, creates what is missing and can
/// be repeated; one transaction, which MariaDB alone ends at every statement that defines
/// something, so that an installation broken off there is finished by the next one. Raises
/// CDBException*, and SchemaError for a newer schema, a product without table definitions or tables
/// of our names without our columns, having changed nothing.
InstallReport Install(CDatabase& database);

/// The same with scripts of the caller's own, numbered from 1 without a gap.
InstallReport Install(CDatabase& database, const std::vector<Script>& scripts);

/// Adds the sample bank to an installed database. A holder or contract that is there is left as it
/// is. Raises CDBException*.
SampleReport InstallSample(CDatabase& database);

} // namespace schema
