#include "stats/is_discrete.h"

#include <fmt/printf.h>

#include <cstddef>
#include <limits>

namespace zavrel {
namespace {

std::size_t TieDivisor(std::size_t n) {
  if (n < 1'000) return std::numeric_limits<std::int32_t>::max();
  if (n < 10'000) return 2'000;
  if (n < 100'000) return 300;
  if (n < 1'000'000) return 40;
  return 20;
}

char Letter(bool flag) { return flag ? 'T' : 'F'; }

}  // namespace

IsDiscrete::IsDiscrete(std::span<const double> sorted) {
  const std::size_t n = sorted.size();
  if (n == 0) return;
  std::size_t ties = 0;
  for (std::size_t i = 1; i < n; ++i) ties += std::size_t{sorted[i] == sorted[i - 1]};
  const std::size_t distinct = n - ties;
  const bool discrete = ties > n / TieDivisor(n);
  forMode = forPercentile = discrete;
  forGraphing = discrete && !(n >= 20 && distinct > n / 2);
}

std::string IsDiscrete::Text() const {
  return fmt::sprintf("IsDiscrete forGraphing=%c, forMode=%c, forPercentile=%c",
                      Letter(forGraphing), Letter(forMode), Letter(forPercentile));
}

}  // namespace zavrel
