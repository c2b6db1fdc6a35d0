#include "random/clock_seed.h"

#include <bit>
#include <cstring>
#include <span>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "platform/clock.h"
#include "platform/md5.h"

namespace zavrel {
namespace {

template <class Reading>
std::uint32_t HashOf(Reading reading) {
  static_assert(std::endian::native == std::endian::little);
  const std::optional<Md5Digest> digest = Md5(std::as_bytes(std::span(&reading, 1)));
  if (!digest) {
    throw VekSecurityFunctionError("HashOfReading", messages::kMessageSecurityFunctionError,
                                   {std::u16string(u"MD5"), std::int64_t{0}});
  }
  std::uint32_t first;
  std::memcpy(&first, digest->data(), sizeof first);
  return first;
}

}  // namespace

std::uint32_t HashOfReading(std::optional<std::int64_t> counter, std::uint32_t milliseconds) {
  return counter ? HashOf(*counter) : HashOf(milliseconds);
}

std::uint32_t HashOfClock() {
  const std::optional<std::int64_t> counter = PerformanceCounter();
  return HashOfReading(counter, counter ? 0 : TickCountMilliseconds());
}

std::uint32_t ClockSeed(const std::function<std::uint32_t()>& hash) {
  std::uint32_t seed = 0;
  while (seed == 0) seed = hash();
  return seed;
}

}  // namespace zavrel
