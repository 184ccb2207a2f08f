#include "benchmarks/null_driver/null_driver.h"

#include <dlfcn.h>

#include <stdexcept>

namespace null_driver
{

namespace
{

template <typename Function>
Function FunctionOf(void* module, const char* name)
{
    auto* const found = dlsym(module, name);
    if (found == nullptr)
    {
        throw std::runtime_error(std::string("the null driver has no ") + name);
    }
    return reinterpret_cast<Function>(found);
}

void Keep(const char16_t* statement, std::size_t length, void* context)
{
    static_cast<std::vector<std::u16string>*>(context)->emplace_back(statement, length);
}

} // namespace

NullDriver::NullDriver() : m_module(dlopen(SIGNUTILS_NULL_DRIVER, RTLD_NOW))
{
    if (m_module == nullptr)
    {
        throw std::runtime_error(dlerror());
    }
    m_readCounts = FunctionOf<ReadCounts>(m_module, kReadCounts);
    m_watch = FunctionOf<Watch>(m_module, kWatch);
}

NullDriver::~NullDriver()
{
    dlclose(m_module);
}

std::string NullDriver::ConnexionString(std::size_t rules) const
{
    return "DRIVER=" SIGNUTILS_NULL_DRIVER ";RULES=" + std::to_string(rules);
}

Counts NullDriver::Counted() const
{
    Counts counts;
    m_readCounts(&counts);
    return counts;
}

Counts NullDriver::CountDuring(const std::function<void()>& work) const
{
    const Counts before = Counted();
    work();
    const Counts after = Counted();
    return {after.connects - before.connects, after.statements - before.statements,
            after.fetches - before.fetches,   after.bindings - before.bindings,
            after.metadata - before.metadata, after.values - before.values};
}

std::vector<std::u16string> NullDriver::StatementsOf(const std::function<void()>& work) const
{
    std::vector<std::u16string> statements;
    m_watch(Keep, &statements);
    work();
    m_watch(nullptr, nullptr);
    return statements;
}

} // namespace null_driver
