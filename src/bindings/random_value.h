#pragma once

#include "random/rnd_gen.h"

namespace zavrel {

/// A random value from the generator. If the sibling product's library is installed beside the
/// add-in, the library draws it; otherwise it is the generator's next double, uniform in [0, 1).
double RandomValue(RndGen& generator);

}  // namespace zavrel
