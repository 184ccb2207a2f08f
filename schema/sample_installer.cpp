#include "schema/installer.h"

#include "database/cdatabase.h"
#include "database/crecordset.h"
#include "schema/sample_bank.h"
#include "schema/transaction.h"

namespace schema
{

namespace
{

bool IsThere(CDatabase& database, const SampleBlock& block)
{
    const std::wstring query = (block.isContract ? L"SELECT CUID FROM SSR_CONTRACT WHERE CUID='"
                                                 : L"SELECT HUID FROM SSR_HOLDER WHERE HUID='") +
                               block.key + L"'";
    CRecordset rows(database);
    rows.OpenW(CRecordset::kForwardOnly, query.c_str(), 0);
    const bool found = !rows.IsEOF();
    rows.Close();
    return found;
}

} // namespace

std::string SampleReport::Text() const
{
    return "sample bank: " + std::to_string(added) + " holders and contracts added, " +
           std::to_string(alreadyThere) + " were there already";
}

SampleReport InstallSample(CDatabase& database)
{
    SampleReport report;
    Transaction transaction(database);
    for (const SampleBlock& block : SampleBank())
    {
        if (IsThere(database, block))
        {
            ++report.alreadyThere;
            continue;
        }
        for (const std::wstring& statement : block.statements)
        {
            database.ExecuteSQLW(statement.c_str());
        }
        ++report.added;
    }
    transaction.Commit();
    return report;
}

} // namespace schema
