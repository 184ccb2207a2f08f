#include "port/posix/com_modules.h"

#include <algorithm>
#include <dlfcn.h>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

namespace port
{

namespace
{

using GetClassObject = HRESULT (*)(REFCLSID, REFIID, void**);
using CanUnloadNow = HRESULT (*)();

struct Module
{
    std::string path;
    void* handle;
    GetClassObject getClassObject;
    CanUnloadNow canUnloadNow; ///< null: stays loaded
};

struct Modules
{
    std::mutex lock;
    std::vector<Module> loaded;
    int holds = 0;
};

/// Never destroyed: objects may be made while static objects are destroyed.
Modules& TheModules()
{
    alignas(Modules) static unsigned char storage[sizeof(Modules)];
    static Modules& modules = *new (storage) Modules;
    return modules;
}

template <typename Function>
Function FunctionOf(void* handle, const char* name)
{
    return reinterpret_cast<Function>(dlsym(handle, name));
}

/// The module's entry, null with `result` set when there is none. Loads outside the lock, because a
/// module's own start-up may make objects; the loader counts a module that was loaded twice.
GetClassObject EntryOf(const std::string& path, HRESULT& result)
{
    Modules& modules = TheModules();
    const auto find = [&]
    {
        return std::find_if(modules.loaded.begin(), modules.loaded.end(),
                            [&path](const Module& module) { return module.path == path; });
    };
    {
        const std::lock_guard<std::mutex> lock(modules.lock);
        if (const auto found = find(); found != modules.loaded.end())
        {
            return found->getClassObject;
        }
    }
    void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
    {
        result = HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    const Module module = {path, handle, FunctionOf<GetClassObject>(handle, "DllGetClassObject"),
                           FunctionOf<CanUnloadNow>(handle, "DllCanUnloadNow")};
    if (module.getClassObject == nullptr)
    {
        dlclose(handle);
        result = CO_E_ERRORINDLL;
        return nullptr;
    }
    const std::lock_guard<std::mutex> lock(modules.lock);
    if (find() != modules.loaded.end())
    {
        dlclose(handle); // another thread was faster
    }
    else
    {
        modules.loaded.push_back(module);
    }
    return module.getClassObject;
}

/// Takes the modules that agree out of the table.
std::vector<void*> TakeUnused()
{
    Modules& modules = TheModules();
    std::vector<void*> handles;
    const std::lock_guard<std::mutex> lock(modules.lock);
    if (modules.holds > 0)
    {
        return handles;
    }
    handles.reserve(modules.loaded.size());
    const auto unused = [&handles](const Module& module)
    {
        const bool goes = module.canUnloadNow != nullptr && module.canUnloadNow() == S_OK;
        if (goes)
        {
            handles.push_back(module.handle);
        }
        return goes;
    };
    modules.loaded.erase(std::remove_if(modules.loaded.begin(), modules.loaded.end(), unused),
                         modules.loaded.end());
    return handles;
}

} // namespace

HRESULT ClassObjectOfModule(const std::string& path, REFCLSID clsid, REFIID iid, void** object)
{
    HRESULT result = S_OK;
    const GetClassObject entry = EntryOf(path, result);
    return entry == nullptr ? result : entry(clsid, iid, object);
}

ModuleHold::ModuleHold()
{
    Modules& modules = TheModules();
    const std::lock_guard<std::mutex> lock(modules.lock);
    ++modules.holds;
}

ModuleHold::~ModuleHold()
{
    Modules& modules = TheModules();
    const std::lock_guard<std::mutex> lock(modules.lock);
    --modules.holds;
}

} // namespace port

void CoFreeUnusedLibraries()
{
    try
    {
        // Closed outside the lock: a module's shutdown may let go of objects of another one.
        for (void* const handle : port::TakeUnused())
        {
            dlclose(handle);
        }
    }
    catch (const std::bad_alloc&)
    {
        return; // without memory they stay loaded until the next call
    }
}
