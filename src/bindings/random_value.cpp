#include "bindings/random_value.h"

#include "bindings/sibling_library.h"

namespace zavrel {

double RandomValue(RndGen& generator) {
  const auto rand = SiblingProduct().rand;
  return rand != nullptr ? rand(&generator) : generator.NextDouble();
}

}  // namespace zavrel
