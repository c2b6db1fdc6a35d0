#include "host/formula/builtin_groups.h"

namespace zavhost {

std::span<const BuiltInFunction> ConditionalFunctions() { return {}; }

}  // namespace zavhost
