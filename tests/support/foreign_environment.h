#pragma once

#include <cstdint>

namespace zavrel::tests {

inline std::uint32_t Mxcsr() {
  std::uint32_t word;
  asm volatile("stmxcsr %0" : "=m"(word) : : "memory");
  return word;
}
inline void SetMxcsr(std::uint32_t word) { asm volatile("ldmxcsr %0" : : "m"(word) : "memory"); }
inline std::uint16_t X87Control() {
  std::uint16_t word;
  asm volatile("fnstcw %0" : "=m"(word) : : "memory");
  return word;
}
inline void SetX87Control(std::uint16_t word) { asm volatile("fldcw %0" : : "m"(word) : "memory"); }

/// An environment that another add-in may leave behind: flush to zero, subnormals as zero, rounding
/// upwards, overflow trapped, long double cut to 53 bits.
class ForeignEnvironment {
 public:
  static constexpr std::uint32_t kMxcsr = 0xDB40;  // the overflow mask (0x400) is missing
  static constexpr std::uint16_t kX87 = 0x0A77;    // and here (0x08)

  ForeignEnvironment() : mxcsr_(Mxcsr()), x87_(X87Control()) {
    SetMxcsr(kMxcsr);
    SetX87Control(kX87);
  }
  ~ForeignEnvironment() {
    asm volatile("fnclex");
    SetX87Control(x87_);
    SetMxcsr(mxcsr_);
  }

 private:
  std::uint32_t mxcsr_;
  std::uint16_t x87_;
};

}  // namespace zavrel::tests
