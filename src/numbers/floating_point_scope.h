#pragma once
// The floating-point environment of a computation.

#include <cstdint>

namespace zavrel {

/// While it lives, arithmetic has the settings that the kernels expect, whatever another add-in has
/// changed: rounding to nearest, subnormals kept, no traps, long double with its full 64-bit
/// significand (a Windows process starts with 53 bits), and a cleared status. Its destructor
/// restores the control words.
class FloatingPointScope {
 public:
  FloatingPointScope();
  ~FloatingPointScope();
  FloatingPointScope(const FloatingPointScope&) = delete;
  FloatingPointScope& operator=(const FloatingPointScope&) = delete;

  /// True if an operation overflowed since the scope began. Pass the results in question through
  /// Settled first.
  bool Overflowed() const { return HasFlag(kOverflow); }
  /// True if an operation overflowed or underflowed, that is, lost digits or everything below the
  /// smallest normal number.
  bool LeftNormalRange() const { return HasFlag(kOverflow | kUnderflow); }

 private:
  // These bits are the same in both status words.
  static constexpr std::uint32_t kOverflow = 0x08;
  static constexpr std::uint32_t kUnderflow = 0x10;

  static bool HasFlag(std::uint32_t flags);

  std::uint32_t mxcsr_;
  std::uint16_t x87_control_;
};

/// Fixes the order of a computation: everything that leads to the result is computed before this
/// call, and everything that depends on it after. The compiler does not know the floating-point
/// environment and would otherwise move arithmetic across reading the status or restoring the
/// control words. Pass every result that leaves a scope through this function last. (By value,
/// since an accumulator passed by reference would stay in memory throughout its loop.)
template <class T>
T Settled(T result) {
  asm volatile("" : "+m"(result) : : "memory");
  return result;
}

}  // namespace zavrel
