#pragma once

#include "database/cdatabase.h"
#include "database/guard_database.h"

namespace schema
{

/// A transaction that is rolled back at the end of the scope unless it was committed.
class Transaction
{
public:
    explicit Transaction(CDatabase& database) : m_database(database)
    {
        m_database.BeginTransaction();
    }
    ~Transaction()
    {
        if (!m_committed)
        {
            // The error that led here is on its way already.
            database::GuardDatabase([this] { m_database.RollbackTransaction(); },
                                    [](const CDBException&) {}, [] {});
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void Commit()
    {
        m_database.CommitTransaction();
        m_committed = true;
    }

private:
    CDatabase& m_database;
    bool m_committed = false;
};

} // namespace schema
