#pragma once

#include "port/com.h"

#include <string>

namespace host
{

/// COM on this thread, which the conversion engine needs, until the end of the scope.
class ComApartment
{
public:
    /// Raises a "could not run" Refusal when COM cannot be had. `initialise` is CoInitialize but in
    /// tests, which have no other way to make it fail.
    explicit ComApartment(HRESULT (*initialise)(void*) = Initialise);
    ~ComApartment();
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    static HRESULT Initialise(void* reserved);

    bool m_isOurs = false;
};

/// An HRESULT for a message: "0x80040154".
std::string ComErrorText(HRESULT result);

} // namespace host
