#pragma once

#include "random/rnd_gen.h"

namespace zavrel {

/// A random value from the generator: what the sibling product's library makes of it when it stands
/// beside the add-in, else the generator's next double, uniform in [0, 1).
double RandomValue(RndGen& generator);

}  // namespace zavrel
