#pragma once
// Parallel work on waiting threads. Handing out work takes microseconds, since no thread has to
// start.

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

/// While it lives, what its thread hands out stays on this thread: for work that is done before
/// another thread wakes. If several threads have one at the same time, that holds for the first.
class CallingThreadOnly {
 public:
  CallingThreadOnly() noexcept;
  ~CallingThreadOnly();
  CallingThreadOnly(const CallingThreadOnly&) = delete;
  CallingThreadOnly& operator=(const CallingThreadOnly&) = delete;

 private:
  bool is_first_ = false;
};

/// The maximum number of participating threads: one for each processor that this process may use,
/// but only this thread while another section runs or a CallingThreadOnly of this thread lives.
std::size_t ParallelThreads() noexcept;

/// Calls body(index) for each index below `count`, on this thread and others at the same time, and
/// returns when all calls are done. The body must not throw and must not call Excel; it runs in
/// whatever floating-point environment its thread has. With one processor, with a count of 1,
/// under a CallingThreadOnly, and while another section runs (also if its own body or another
/// thread calls this function), all calls run on this thread in order.
template <class Body>
void ParallelFor(std::size_t count, Body&& body) {
  auto* object = const_cast<void*>(static_cast<const void*>(&body));
  parallel::Run(count, {object, [](void* typed, std::size_t index) {
                          (*static_cast<std::remove_reference_t<Body>*>(typed))(index);
                        }});
}

}  // namespace zavrel
