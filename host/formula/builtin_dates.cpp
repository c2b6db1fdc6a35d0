#include "host/formula/builtin_groups.h"

namespace zavhost {

std::span<const BuiltInFunction> DateFunctions() { return {}; }

}  // namespace zavhost
