#pragma once
// The floating-point environment of a computation.

#include <cstdint>

namespace zavrel {

/// While it lives, arithmetic runs as the kernels expect it, whatever another add-in left behind:
/// rounding to nearest, subnormals kept, nothing trapped, long double at its full 64 bits of
/// significand (a Windows process starts with 53), and the status cleared. At its end the control
/// words are what they were.
class FloatingPointScope {
 public:
  FloatingPointScope();
  ~FloatingPointScope();
  FloatingPointScope(const FloatingPointScope&) = delete;
  FloatingPointScope& operator=(const FloatingPointScope&) = delete;

  /// True when an operation overflowed since the scope began. What is asked about must have gone
  /// through Settled before.
  bool Overflowed() const { return HasFlag(kOverflow); }
  /// True when one overflowed, or underflowed: lost digits, or everything, below the smallest
  /// normal number.
  bool LeftNormalRange() const { return HasFlag(kOverflow | kUnderflow); }

 private:
  // The same bits in both status words.
  static constexpr std::uint32_t kOverflow = 0x08;
  static constexpr std::uint32_t kUnderflow = 0x10;

  static bool HasFlag(std::uint32_t flags);

  std::uint32_t mxcsr_;
  std::uint16_t x87_control_;
};

/// Pins a result: what leads to it is computed before, what follows after. The compiler knows
/// nothing of the floating-point environment and would otherwise move arithmetic across reading the
/// status or restoring the control words. Every result that leaves a scope goes through here last.
/// (By value: an accumulator that is pinned itself would live in memory throughout its loop.)
template <class T>
T Settled(T result) {
  asm volatile("" : "+m"(result) : : "memory");
  return result;
}

}  // namespace zavrel
