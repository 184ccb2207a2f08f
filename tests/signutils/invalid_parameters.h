#pragma once

#include "port/crt.h"

namespace testing_support
{

/// A host's own invalid-parameter handler, for one scope; counts its calls.
class CountInvalidParameters
{
public:
    CountInvalidParameters() : m_before(_set_invalid_parameter_handler(Count)) { Counter() = 0; }
    ~CountInvalidParameters() { _set_invalid_parameter_handler(m_before); }
    CountInvalidParameters(const CountInvalidParameters&) = delete;
    CountInvalidParameters& operator=(const CountInvalidParameters&) = delete;

    int Calls() const { return Counter(); }

private:
    static int& Counter()
    {
        static int calls = 0;
        return calls;
    }

    static void Count(const wchar_t*, const wchar_t*, const wchar_t*, unsigned int, std::uintptr_t)
    {
        ++Counter();
    }

    _invalid_parameter_handler m_before;
};

} // namespace testing_support
