#pragma once
// Work in parallel, on threads that stand ready: handing it out costs microseconds, not the start
// of a thread.

#include <cstddef>
#include <type_traits>

namespace zavrel {

namespace parallel {
struct Task {
  void* object;
  void (*run)(void* object, std::size_t index);
};
void Run(std::size_t count, Task task) noexcept;
}  // namespace parallel

/// How many threads take part at most: one for each processor that this process may use, and only
/// this one while another section runs.
std::size_t ParallelThreads() noexcept;

/// Calls body(index) for each index below `count`, on this thread and on others at the same time,
/// and returns when all are done. The body must not throw and must not call Excel; it finds the
/// floating-point environment that its thread happens to have. With one processor, a count of 1,
/// or while another section runs (its own body called this, or another thread's), everything runs
/// on this thread in order.
template <class Body>
void ParallelFor(std::size_t count, Body&& body) {
  auto* object = const_cast<void*>(static_cast<const void*>(&body));
  parallel::Run(count, {object, [](void* typed, std::size_t index) {
                          (*static_cast<std::remove_reference_t<Body>*>(typed))(index);
                        }});
}

}  // namespace zavrel
