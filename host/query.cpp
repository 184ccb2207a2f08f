#include "host/query.h"

#include "database/crecordset.h"
#include "database/guard_database.h"
#include "host/refusal.h"
#include "host/text.h"
#include "support/codepage.h"
#include "support/numbers.h"

namespace host
{

std::string Literal(const std::string& value)
{
    std::string literal = "'";
    for (const char character : value)
    {
        literal += character;
        if (character == '\'')
        {
            literal += '\'';
        }
    }
    return literal + "'";
}

std::int64_t NumberIn(const QueryRow& row, const char* column)
{
    return support::ToInt64(row.at(column).c_str());
}

void Conditions::Add(const std::string& condition)
{
    m_clause += (m_clause.empty() ? " WHERE " : " AND ") + condition;
}

void Conditions::Equal(const std::string& column, const std::string& value)
{
    Add(column + " = " + Literal(value));
}

void Conditions::AtLeast(const std::string& column, const std::string& value)
{
    Add(column + " >= " + Literal(value));
}

void Conditions::AtMost(const std::string& column, const std::string& value)
{
    Add(column + " <= " + Literal(value));
}

void Conditions::LessThan(const std::string& column, const std::string& value)
{
    Add(column + " < " + Literal(value));
}

void Conditions::EqualNumber(const std::string& column, long long value)
{
    Add(column + " = " + std::to_string(value));
}

void Conditions::GreaterNumber(const std::string& column, long long value)
{
    Add(column + " > " + std::to_string(value));
}

void Conditions::AtMostNumber(const std::string& column, long long value)
{
    Add(column + " <= " + std::to_string(value));
}

void Conditions::AtLeastDecimal(const std::string& column, const std::string& digits)
{
    Add(column + " >= " + digits);
}

void Conditions::AtMostDecimal(const std::string& column, const std::string& digits)
{
    Add(column + " <= " + digits);
}

std::string Conditions::Clause() const
{
    return m_clause;
}

struct RowReader::State
{
    CRecordset rows;
    const Connection& connection;
    const std::vector<std::string>& columns;
    bool isFirst = true;

    State(CDatabase& database, const Connection& itsConnection,
          const std::vector<std::string>& itsColumns)
        : rows(database), connection(itsConnection), columns(itsColumns)
    {
    }

    // Runs one database step and turns its failure into a refusal.
    template <typename Step>
    void Guarded(Step&& step)
    {
        std::string reason;
        const bool done = database::GuardDatabase(
            step,
            [&reason](const CDBException& raised)
            { reason = support::Utf8FromNarrow(raised.GetText()); },
            [&reason] { reason = "unknown error"; });
        if (!done)
        {
            throw Refusal(kCouldNotRun,
                          connection.origin + ": the database " + Quoted(connection.shown) +
                              " refused to be read: " + Printable(reason) +
                              ". Check that its tables are there (signcheck init) and that the "
                              "user may read them.");
        }
    }
};

RowReader::RowReader(CDatabase& database, const Connection& connection,
                     const std::string& statement, const std::vector<std::string>& columns)
    : m_state(std::make_unique<State>(database, connection, columns))
{
    m_state->Guarded(
        [&] {
            m_state->rows.OpenW(CRecordset::kForwardOnly, support::WideFromUtf8(statement).c_str(),
                                0);
        });
}

RowReader::~RowReader() = default;

bool RowReader::Next(QueryRow& row)
{
    State& state = *m_state;
    bool hasRow = false;
    state.Guarded(
        [&]
        {
            if (!state.isFirst)
            {
                state.rows.MoveNext();
            }
            state.isFirst = false;
            hasRow = !state.rows.IsEOF();
            row.clear();
            for (const std::string& column : state.columns)
            {
                if (!hasRow)
                {
                    break;
                }
                TSimpleStringW value;
                state.rows.GetFieldValue(column.c_str(), value);
                row[column] = support::Utf8FromWide(value.SafeGetString());
            }
        });
    return hasRow;
}

bool RowReader::IsNull(const char* column) const
{
    bool isNull = false;
    m_state->Guarded([&] { isNull = m_state->rows.IsFieldNull(column); });
    return isNull;
}

} // namespace host
