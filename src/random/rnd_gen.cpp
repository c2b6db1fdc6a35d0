#include "random/rnd_gen.h"

namespace zavrel {

double RndGen::NextDouble() noexcept {
  const std::uint64_t low = Next() & 0x3FFFFFF;
  const std::uint64_t high = Next() & 0x7FFFFFF;
  return static_cast<double>(high << 26 | low) * 0x1p-53;
}

std::int32_t RndGen::FurtherQuery() const noexcept { return 0; }

}  // namespace zavrel
