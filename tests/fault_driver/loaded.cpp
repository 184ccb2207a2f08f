#include "tests/fault_driver/loaded.h"

#include <dlfcn.h>
#include <link.h>
#include <stdexcept>
#include <string_view>

namespace fault_driver
{

namespace
{

constexpr std::string_view kDirectly = "Driver=SQLite3;";

int TakeSqliteDriver(dl_phdr_info* module, std::size_t, void* found)
{
    const std::string_view name = module->dlpi_name;
    if (name.find("libsqlite3odbc") == std::string_view::npos)
    {
        return 0;
    }
    *static_cast<std::string*>(found) = name;
    return 1;
}

const char* FileOf(Entries entries)
{
    return entries == Entries::Narrow ? SIGNUTILS_FAULT_DRIVER : SIGNUTILS_WIDE_FAULT_DRIVER;
}

} // namespace

Control& LoadedControl(Entries entries)
{
    using Ask = Control* (*)();
    void* const module = dlopen(FileOf(entries), RTLD_NOW | RTLD_LOCAL);
    void* const ask = module == nullptr ? nullptr : dlsym(module, "SignUtilsFaultDriverControl");
    if (ask == nullptr)
    {
        throw std::runtime_error(dlerror());
    }
    return *reinterpret_cast<Ask>(ask)();
}

std::string ThroughFaultDriver(const std::string& connexionString, Entries entries)
{
    std::string real;
    dl_iterate_phdr(TakeSqliteDriver, &real);
    if (real.empty() || connexionString.rfind(kDirectly, 0) != 0)
    {
        throw std::runtime_error("not a connection of SQLite's driver: " + connexionString);
    }
    return std::string("DRIVER=") + FileOf(entries) + ";FAULT_DRIVER=" + real + ";" +
           connexionString.substr(kDirectly.size());
}

} // namespace fault_driver
