#pragma once

#include "tests/fault_driver/handles.h"

#include <chrono>
#include <thread>

namespace fault_driver
{

Control& TheControl();

/// What is to happen to a call, which is written down.
struct Fate
{
    bool faulted = false;
    Kind kind = Kind::Refuse;
    std::string state;
};

Fate Decide(Call call, ConnectionHandle* connection);

inline Call CallOn(Entry entry, const EnvironmentHandle&)
{
    return {entry, 0, 0, 0, 0, false};
}

inline Call CallOn(Entry entry, const ConnectionHandle& handle)
{
    return {entry, handle.number, 0, 0, 0, false};
}

inline Call CallOn(Entry entry, const StatementHandle& handle)
{
    return {entry, handle.connection->number, handle.number, 0, 0, false};
}

inline ConnectionHandle* ConnectionOf(EnvironmentHandle&)
{
    return nullptr;
}

inline ConnectionHandle* ConnectionOf(ConnectionHandle& handle)
{
    return &handle;
}

inline ConnectionHandle* ConnectionOf(StatementHandle& handle)
{
    return handle.connection;
}

inline void WaitIfFated(const Fate& fate)
{
    if (fate.faulted && fate.kind == Kind::Wait)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

inline testing_support::Diagnosis Injected(const std::string& state)
{
    return {state, 7, "a fault was injected (" + state + ")"};
}

// What the real driver says is kept: the driver manager asks twice, and some drivers answer once.
void LearnDiagnosis(EnvironmentHandle& handle);
void LearnDiagnosis(ConnectionHandle& handle);
void LearnDiagnosis(StatementHandle& handle);

template <typename Handle, typename Forward>
SQLRETURN Forwarded(Handle& handle, const Forward& forward)
{
    const auto result = static_cast<SQLRETURN>(forward());
    if (result == SQL_ERROR || result == SQL_SUCCESS_WITH_INFO)
    {
        LearnDiagnosis(handle);
    }
    return result;
}

/// One call on its way to the real driver, unless it is made to fail.
template <typename Handle, typename Forward>
SQLRETURN Pass(const Call& call, Handle& handle, const Forward& forward)
{
    handle.diagnosis = {};
    const Fate fate = Decide(call, ConnectionOf(handle));
    WaitIfFated(fate);
    if (!fate.faulted || fate.kind == Kind::Wait)
    {
        return Forwarded(handle, forward);
    }
    if (fate.kind == Kind::SucceedWithRemark)
    {
        const SQLRETURN result = Forwarded(handle, forward);
        if (result != SQL_SUCCESS)
        {
            return result;
        }
        handle.diagnosis = Injected("01004");
        return SQL_SUCCESS_WITH_INFO;
    }
    if (fate.kind == Kind::DoAndRefuse)
    {
        forward();
    }
    handle.diagnosis = Injected(fate.state);
    return SQL_ERROR;
}

/// As Pass, for a call that ends its handle: it fails before or not at all.
template <typename Handle, typename Forward>
SQLRETURN PassLast(Entry entry, Handle& handle, const Forward& forward)
{
    const Fate fate = Decide(CallOn(entry, handle), ConnectionOf(handle));
    if (fate.faulted && fate.kind == Kind::Refuse)
    {
        handle.diagnosis = Injected(fate.state);
        return SQL_ERROR;
    }
    WaitIfFated(fate);
    return static_cast<SQLRETURN>(forward());
}

template <typename Handle, typename Forward>
SQLRETURN Pass(Entry entry, Handle& handle, const Forward& forward)
{
    return Pass(CallOn(entry, handle), handle, forward);
}

} // namespace fault_driver
