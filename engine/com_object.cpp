#include "engine/com_object.h"

namespace engine
{

std::atomic<long> ModuleReference::s_count{0};

} // namespace engine
