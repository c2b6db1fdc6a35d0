#include "bindings/random_value.h"

#include "bindings/companion_library.h"

namespace zavrel {

double RandomValue(RndGen& generator) {
  // It calls the generator back through its table of virtual functions.
  using Rand = double(RndGen * generator);
  static auto* const sibling = AsFunction<Rand>(SiblingLibrary().FindExport("QLX4_Rand"));
  return sibling != nullptr ? sibling(&generator) : generator.NextDouble();
}

}  // namespace zavrel
