#include "tests/fault_driver/faults.h"

namespace fault_driver
{

namespace
{

/// A dead connection can still be let go.
bool LetsGo(Entry entry)
{
    return entry == Entry::FreeConnection || entry == Entry::FreeStatement ||
           entry == Entry::Disconnect || entry == Entry::CloseStatement;
}

/// There is no handle left to complain of what has been freed, and handles come without remarks:
/// the driver manager takes one for a failure.
bool CanBefall(Entry entry, Kind kind)
{
    switch (entry)
    {
    case Entry::FreeEnvironment:
    case Entry::FreeConnection:
    case Entry::FreeStatement:
    case Entry::AllocEnvironment:
    case Entry::AllocConnection:
    case Entry::AllocStatement:
        return kind == Kind::Refuse || kind == Kind::Wait;
    default:
        return true;
    }
}

bool IsTurnOf(const Plan& plan, std::uint64_t number)
{
    return plan.failing != 0 && number != 0 &&
           (number == plan.failing || (plan.reach == Reach::FromThenOn && number > plan.failing));
}

testing_support::Diagnosis Ask(const RealDriver& driver, SQLSMALLINT kind, SQLHANDLE handle)
{
    SQLCHAR state[6] = {};
    SQLCHAR message[1024] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    const SQLRETURN result = driver.getDiagRec(kind, handle, 1, state, &native, message,
                                               static_cast<SQLSMALLINT>(sizeof message), &length);
    if (!SQL_SUCCEEDED(result))
    {
        return {};
    }
    return {testing_support::OdbcText(state, SQL_NTS), native,
            testing_support::OdbcText(message, SQL_NTS)};
}

} // namespace

void LearnDiagnosis(EnvironmentHandle&) {}

void LearnDiagnosis(ConnectionHandle& handle)
{
    if (handle.real != nullptr)
    {
        handle.diagnosis = Ask(*handle.driver, SQL_HANDLE_DBC, handle.real);
    }
}

void LearnDiagnosis(StatementHandle& handle)
{
    handle.diagnosis = Ask(*handle.connection->driver, SQL_HANDLE_STMT, handle.real);
}

Control& TheControl()
{
    static Control control;
    return control;
}

Fate Decide(Call call, ConnectionHandle* connection)
{
    Control& control = TheControl();
    const Plan& plan = control.plan;
    if ((plan.entries & Bit(call.entry)) != 0)
    {
        call.number = ++control.counted;
    }
    const bool dead = connection != nullptr && connection->dead && !LetsGo(call.entry);
    call.faulted = dead || (IsTurnOf(plan, call.number) && CanBefall(call.entry, plan.kind));
    control.faults += call.faulted ? 1U : 0U;
    control.calls.push_back(call);
    if (call.faulted && plan.reach == Reach::Connection && connection != nullptr)
    {
        connection->dead = true;
    }
    return {call.faulted, dead ? Kind::Refuse : plan.kind, dead ? "08S01" : plan.state};
}

} // namespace fault_driver
