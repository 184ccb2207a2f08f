#pragma once

#include "port/com.h"

#include <string>

namespace port
{

/// Gets the class object out of the module, which is loaded first where it is not. The path is in
/// the platform's own form.
HRESULT ClassObjectOfModule(const std::string& path, REFCLSID clsid, REFIID iid, void** object);

/// Keeps every module loaded until the end of the scope, for calls that are between two objects.
class ModuleHold
{
public:
    ModuleHold();
    ~ModuleHold();
    ModuleHold(const ModuleHold&) = delete;
    ModuleHold& operator=(const ModuleHold&) = delete;
};

} // namespace port
