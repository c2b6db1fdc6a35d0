#pragma once

#include <array>
#include <span>

#include "random/rnd_gen.h"

namespace zavrel {

/// MT19937, period 2^19937 - 1. M. Matsumoto and T. Nishimura, "Mersenne Twister: a
/// 623-dimensionally equidistributed uniform pseudo-random number generator", ACM Transactions on
/// Modeling and Computer Simulation 8 (1998); seeding as its authors revised it in 2002.
class MersenneTwister final : public RndGen {
 public:
  explicit MersenneTwister(std::uint32_t seed = 5489) noexcept { Seed(seed); }

  void* Destroy(std::uint32_t flags) noexcept override;
  void SeedSequence(const std::uint32_t* words, std::size_t count) noexcept override;
  void Seed(std::uint32_t value) noexcept override;
  std::uint32_t Next() noexcept override;
  /// The high 27 bits of a first value, followed by the high 26 bits of a second one.
  double NextDouble() noexcept override;
  const char* Name() const noexcept override { return "MersenneTwister"; }

  /// The value of the last seeding, as a sequence of one word. Empty after seeding with a sequence:
  /// storing it would need memory and could therefore fail.
  std::span<const std::uint32_t> seed_sequence() const {
    return {&seed_, seeded_from_one_value_ ? 1u : 0u};
  }

 private:
  static constexpr std::size_t kWords = 624;

  void Initialize(std::uint32_t value) noexcept;
  void Refill() noexcept;

  std::array<std::uint32_t, kWords> state_;
  std::size_t next_ = kWords;
  std::uint32_t seed_ = 0;
  bool seeded_from_one_value_ = false;
};

}  // namespace zavrel
