#pragma once

#include <cstdint>

namespace zavrel::tests {

/// An environment that another add-in may leave behind; unless another is given: flush to zero,
/// subnormals as zero, rounding upwards, overflow trapped, long double cut to 53 bits.
class ForeignEnvironment {
 public:
  // The overflow masks (0x400 and 0x08) are missing.
  explicit ForeignEnvironment(std::uint32_t mxcsr = 0xDB40, std::uint16_t x87 = 0x0A77)
      : mxcsr_(mxcsr), x87_(x87) {
    Exchange(mxcsr_, x87_);
  }
  ~ForeignEnvironment() {
    asm volatile("fnclex");
    Exchange(mxcsr_, x87_);
  }
  ForeignEnvironment(const ForeignEnvironment&) = delete;
  ForeignEnvironment& operator=(const ForeignEnvironment&) = delete;

  /// Whether it stands now, flags aside.
  static bool Stands(std::uint32_t mxcsr = 0xDB40, std::uint16_t x87 = 0x0A77) {
    return (Mxcsr() & ~0x3Fu) == (mxcsr & ~0x3Fu) && X87() == x87;
  }

 private:
  static std::uint32_t Mxcsr() {
    std::uint32_t word;
    asm volatile("stmxcsr %0" : "=m"(word) : : "memory");
    return word;
  }
  static std::uint16_t X87() {
    std::uint16_t word;
    asm volatile("fnstcw %0" : "=m"(word) : : "memory");
    return word;
  }
  static void Exchange(std::uint32_t& mxcsr, std::uint16_t& x87) {
    const std::uint32_t old_mxcsr = Mxcsr();
    const std::uint16_t old_x87 = X87();
    asm volatile("ldmxcsr %0" : : "m"(mxcsr) : "memory");
    asm volatile("fldcw %0" : : "m"(x87) : "memory");
    mxcsr = old_mxcsr;
    x87 = old_x87;
  }

  std::uint32_t mxcsr_;
  std::uint16_t x87_;
};

}  // namespace zavrel::tests
