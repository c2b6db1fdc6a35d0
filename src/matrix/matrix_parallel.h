#pragma once
// Arithmetic in parallel.

#include <atomic>
#include <cstddef>

#include "numbers/floating_point_scope.h"
#include "platform/parallel.h"

namespace zavrel {

/// ParallelFor for computations: every part of the work runs in the environment that the kernels
/// expect, on any thread. True if an operation overflowed or underflowed.
template <class Body>
bool ParallelCompute(std::size_t count, const Body& body) {
  std::atomic<bool> left_normal_range{false};
  ParallelFor(count, [&](std::size_t index) {
    const FloatingPointScope environment;
    body(index);
    // Makes sure that everything the body stored is computed before the scope ends.
    asm volatile("" : : : "memory");
    if (environment.LeftNormalRange()) left_normal_range.store(true, std::memory_order_relaxed);
  });
  return left_normal_range.load(std::memory_order_relaxed);
}

}  // namespace zavrel
