// Random numbers: ZavRand, and the same for macros.
//
// Every call draws from a new generator that is seeded from the clock. Two calls within one tick of
// the clock give the same number.
#include <limits>

#include "bindings/random_value.h"
#include "frame/macro_call.h"
#include "frame/worksheet_function.h"
#include "platform/export.h"
#include "random/clock_seed.h"
#include "random/mersenne_twister.h"

namespace zavrel {
namespace {

// Excel shows #NUM! for a NaN.
constexpr double kFailed = std::numeric_limits<double>::quiet_NaN();

double Draw() {
  MersenneTwister generator(ClockSeed());
  return RandomValue(generator);
}

}  // namespace

/// A random number, new at every recalculation: uniform in [0, 1), unless the sibling product's
/// library draws it.
ZAV_EXPORT double ZavrelRand() {
  return PlainFunction("ZavrelRand", kFailed, [] { return Draw(); });
}

ZAV_EXPORT double ZavrelRandVB() {
  return MacroStatus("ZavrelRandVB", kFailed, [] { return Draw(); });
}

}  // namespace zavrel
