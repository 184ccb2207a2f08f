#include "port/class_advice.h"

namespace port
{

const char* AdviceToRegister()
{
    return "Register the engine's module as administrator: regsvr32 signutils-engine.dll";
}

const char* NameOfClassRegistry()
{
    return "Windows' registry";
}

} // namespace port
