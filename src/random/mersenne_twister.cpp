#include "random/mersenne_twister.h"

#include <algorithm>
#include <type_traits>

namespace zavrel {
namespace {

constexpr std::size_t kMiddle = 397;

/// Joins the upper bit of one word to the lower bits of the next and applies the recurrence's
/// matrix.
constexpr std::uint32_t Twisted(std::uint32_t upper, std::uint32_t lower) {
  const std::uint32_t joined = (upper & 0x80000000u) | (lower & 0x7FFFFFFFu);
  return joined >> 1 ^ ((joined & 1) != 0 ? 0x9908B0DFu : 0u);
}

}  // namespace

static_assert(std::is_trivially_destructible_v<MersenneTwister>);

void* MersenneTwister::Destroy(std::uint32_t flags) noexcept {
  if ((flags & 1) != 0) delete this;
  return this;  // NOLINT(clang-analyzer-cplusplus.NewDelete): a bare address
}

void MersenneTwister::Seed(std::uint32_t value) noexcept {
  seed_ = value;
  seeded_from_one_value_ = true;
  Initialize(value);
}

void MersenneTwister::Initialize(std::uint32_t value) noexcept {
  state_[0] = value;
  for (std::uint32_t i = 1; i < kWords; ++i) {
    const std::uint32_t before = state_[i - 1];
    state_[i] = 1812433253u * (before ^ before >> 30) + i;
  }
  next_ = kWords;
}

void MersenneTwister::SeedSequence(const std::uint32_t* words, std::size_t count) noexcept {
  static constexpr std::uint32_t kZero = 0;
  if (words == nullptr || count == 0) {
    words = &kZero;
    count = 1;
  }
  seeded_from_one_value_ = false;
  Initialize(19650218u);
  std::size_t i = 1;
  // The last place is followed by the second one; the first then holds the last word.
  const auto advance = [&] {
    if (++i < kWords) return;
    state_[0] = state_[kWords - 1];
    i = 1;
  };
  std::size_t j = 0;
  for (std::size_t steps = std::max(kWords, count); steps > 0; --steps) {
    const std::uint32_t before = state_[i - 1];
    state_[i] =
        (state_[i] ^ (before ^ before >> 30) * 1664525u) + words[j] + static_cast<std::uint32_t>(j);
    advance();
    if (++j == count) j = 0;
  }
  for (std::size_t steps = kWords - 1; steps > 0; --steps) {
    const std::uint32_t before = state_[i - 1];
    state_[i] = (state_[i] ^ (before ^ before >> 30) * 1566083941u) - static_cast<std::uint32_t>(i);
    advance();
  }
  state_[0] = 0x80000000u;  // ensures that the state is not all zeros
}

std::uint32_t MersenneTwister::Next() noexcept {
  if (next_ == kWords) Refill();
  std::uint32_t value = state_[next_++];
  value ^= value >> 11;
  value ^= value << 7 & 0x9D2C5680u;
  value ^= value << 15 & 0xEFC60000u;
  return value ^ value >> 18;
}

double MersenneTwister::NextDouble() noexcept {
  const std::uint32_t high = Next() >> 5;
  const std::uint32_t low = Next() >> 6;
  return (high * 67108864.0 + low) * 0x1p-53;
}

void MersenneTwister::Refill() noexcept {
  std::size_t i = 0;
  for (; i < kWords - kMiddle; ++i)
    state_[i] = state_[i + kMiddle] ^ Twisted(state_[i], state_[i + 1]);
  for (; i < kWords - 1; ++i)
    state_[i] = state_[i + kMiddle - kWords] ^ Twisted(state_[i], state_[i + 1]);
  state_[kWords - 1] = state_[kMiddle - 1] ^ Twisted(state_[kWords - 1], state_[0]);
  next_ = 0;
}

}  // namespace zavrel
