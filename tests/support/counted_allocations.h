#pragma once
// Counts what a program's code allocates, outside the fake host. Replaces the operators: for one
// file of a program.

#include <cstdlib>
#include <new>

#include "support/fake_excel.h"

namespace zavrel::tests {

inline bool counting = false;
inline int allocations = 0;
inline int until_failure = -1;  // allocations that still succeed before one fails; negative: all do

template <class Call>
auto Counted(Call call) {
  allocations = 0;
  counting = true;
  auto result = call();
  counting = false;
  return result;
}

}  // namespace zavrel::tests

// NOLINTBEGIN(misc-definitions-in-headers,cppcoreguidelines-*): the program's own allocator.
// Inlined, one half of a pair would look to the compiler as if it had lost the other.
[[gnu::noinline]] void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  using namespace zavrel::tests;
  const bool counts = FakeExcel::inside == 0;
  if (counting && counts) ++allocations;
  const bool fails = until_failure == 0 && counts;
  if (until_failure >= 0 && counts) --until_failure;
  return fails ? nullptr : std::malloc(bytes > 0 ? bytes : 1);
}
[[gnu::noinline]] void* operator new(std::size_t bytes) {
  if (void* block = operator new(bytes, std::nothrow)) return block;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }
// NOLINTEND(misc-definitions-in-headers,cppcoreguidelines-*)
