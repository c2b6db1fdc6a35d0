#pragma once
// Arithmetic in parallel.

#include <cstddef>

#include "platform/parallel.h"
#include "stats/floating_point_scope.h"

namespace zavrel {

/// ParallelFor whose body computes: on whatever thread a part of the work runs, it finds the
/// environment that the kernels expect.
template <class Body>
void ParallelCompute(std::size_t count, const Body& body) {
  ParallelFor(count, [&](std::size_t index) {
    const FloatingPointScope environment;
    body(index);
    // What the body stored is computed before the scope ends.
    asm volatile("" : : : "memory");
  });
}

}  // namespace zavrel
