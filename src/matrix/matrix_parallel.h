#pragma once
// Arithmetic in parallel.

#include <atomic>
#include <cstddef>

#include "numbers/floating_point_scope.h"
#include "platform/parallel.h"

namespace zavrel {

/// ParallelFor whose body computes: on whatever thread a part of the work runs, it finds the
/// environment that the kernels expect. True when an operation overflowed or underflowed.
template <class Body>
bool ParallelCompute(std::size_t count, const Body& body) {
  std::atomic<bool> left_normal_range{false};
  ParallelFor(count, [&](std::size_t index) {
    const FloatingPointScope environment;
    body(index);
    // What the body stored is computed before the scope ends.
    asm volatile("" : : : "memory");
    if (environment.LeftNormalRange()) left_normal_range.store(true, std::memory_order_relaxed);
  });
  return left_normal_range.load(std::memory_order_relaxed);
}

}  // namespace zavrel
