#include "numbers/floating_point_scope.h"

namespace zavrel {
namespace {

constexpr std::uint32_t kMxcsrDefault = 0x1F80;  // all masked, to nearest, status clear
constexpr std::uint16_t kX87Default = 0x037F;    // all masked, to nearest, 64-bit significand

std::uint32_t ReadMxcsr() {
  std::uint32_t word;
  asm volatile("stmxcsr %0" : "=m"(word) : : "memory");
  return word;
}

void WriteMxcsr(std::uint32_t word) { asm volatile("ldmxcsr %0" : : "m"(word) : "memory"); }

}  // namespace

FloatingPointScope::FloatingPointScope() : mxcsr_(ReadMxcsr()) {
  asm volatile("fnstcw %0\n\tfnclex\n\tfldcw %1"
               : "=m"(x87_control_)
               : "m"(kX87Default)
               : "memory");
  WriteMxcsr(kMxcsrDefault);
}

// Clears the x87 status first, since a pending flag would fault at the next instruction under a
// control word that traps. (Reloading the whole environment would empty the x87 stack.)
FloatingPointScope::~FloatingPointScope() {
  asm volatile("fnclex\n\tfldcw %0" : : "m"(x87_control_) : "memory");
  WriteMxcsr(mxcsr_);
}

bool FloatingPointScope::HasFlag(std::uint32_t flags) {
  std::uint16_t x87_status;
  asm volatile("fnstsw %0" : "=m"(x87_status) : : "memory");
  return ((ReadMxcsr() | x87_status) & flags) != 0;
}

}  // namespace zavrel
