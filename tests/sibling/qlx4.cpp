// Stands in for the sibling product's library: answers in a way that tells who computed.
#include <cstdint>
#include <cstring>

#include "platform/export.h"

/// 1000 times the count, plus the first and the last value, plus the method and a tenth of p. A p
/// of a half by method 5 fails.
ZAV_EXPORT std::int16_t QLX4_CalcDoubleArrayTarget3(std::int32_t count, const double* sorted,
                                                    std::int16_t direction, double p,
                                                    std::int16_t discrete_setting,
                                                    std::int16_t method, double* result) {
  if (direction != 1 || discrete_setting != -1) return 1;
  if (p == 0.5 && method == 5) return 12;
  *result = 1000.0 * count + sorted[0] + sorted[count - 1] + method + p / 10;
  return 0;
}

ZAV_EXPORT std::int16_t QLX4_DoubleIsError(double value) { return value != value ? -1 : 0; }

/// 100 more than what the generator's function at place 4 gives, the next double, by way of the
/// table alone; -1 when the one at place 5 gives another name.
ZAV_EXPORT double QLX4_Rand(void* generator) {
  void** const table = *static_cast<void***>(generator);
  const char* name = reinterpret_cast<const char* (*)(void*)>(table[5])(generator);
  if (std::strcmp(name, "MersenneTwister") != 0) return -1;
  return 100 + reinterpret_cast<double (*)(void*)>(table[4])(generator);
}
