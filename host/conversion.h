#pragma once

#include "amounts/work_files.h"
#include "host/option_values.h"
#include "host/order_format.h"
#include "host/order_lock.h"

#include <string>

namespace host
{

/// One order file and what it was asked to be read as.
struct OrderSource
{
    std::string path;  ///< Windows-1252
    std::string shown; ///< as given, UTF-8
    OrderFormat format;
    std::string holder = "signcheck"; ///< who the lock beside the file says that it is held by
};

/// The order file of a command with argument FILE and option --format. `command` is the command's
/// name. Raises Refusal.
OrderSource ReadOrderSource(const OptionValues& values, const std::string& command);

/// The work files of one order file, beside it from the conversion to the end of the scope. While
/// they are, nobody else judges or converts the order: its lock is held.
class Conversion
{
public:
    /// Converts. Raises a "could not run" Refusal, with nothing left behind, when the file cannot
    /// be converted, when another host judges or converts it, and also when work files lie there
    /// already: they are somebody else's, and the conversion would replace them.
    explicit Conversion(const OrderSource& order);
    /// Warns of a work file that it cannot remove.
    ~Conversion();
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    /// Removes what can be removed now. Where an open file can be, its reader goes on, and nothing
    /// stays behind whatever becomes of the process; where not, the end of the scope removes it.
    void Remove();
    /// Leaves the work files.
    void Keep() noexcept
    {
        m_isOurs = false;
        m_lock.GiveBack();
    }

private:
    Conversion(std::string order, const std::string& holder);
    bool IsAnythingLeft() const;
    void RequireToBeAlone() const;
    std::string Path(const amounts::WorkFileKind& kind) const;
    void RefuseExisting(const OrderSource& order) const;
    void Run(const OrderSource& order) const;
    void RefuseMissing(const OrderSource& order) const;

    std::string m_order;
    OrderLock m_lock;
    bool m_isOurs = false; // to remove
};

} // namespace host
