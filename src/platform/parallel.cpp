#include "platform/parallel.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <thread>

#include "platform/standing_threads.h"

namespace zavrel {
namespace {

/// Hands out each index of a section once.
class Section {
 public:
  Section(std::size_t count, parallel::Task task) : count_(count), task_(task) {}

  void TakePart() noexcept {
    for (;;) {
      const std::size_t index = next_.fetch_add(1, std::memory_order_relaxed);
      if (index >= count_) return;
      task_.run(task_.object, index);
    }
  }

 private:
  std::size_t count_;
  parallel::Task task_;
  std::atomic<std::size_t> next_{0};
};

std::atomic<bool> section_runs{false};

// The thread whose CallingThreadOnly lives. Not a thread_local: in a library for Windows its first
// use takes memory, and the process ends if there is none.
std::atomic<const int*> calling_thread_only{nullptr};

/// Another address in every thread.
const int* ThisThread() noexcept { return &errno; }

bool StaysHere() noexcept {
  return calling_thread_only.load(std::memory_order_relaxed) == ThisThread();
}

std::size_t Processors() noexcept {
  static const std::size_t processors = std::max(1u, std::thread::hardware_concurrency());
  return processors;
}

}  // namespace

CallingThreadOnly::CallingThreadOnly() noexcept {
  const int* nobody = nullptr;
  is_first_ = calling_thread_only.compare_exchange_strong(nobody, ThisThread());
}
CallingThreadOnly::~CallingThreadOnly() {
  if (is_first_) calling_thread_only = nullptr;
}

std::size_t ParallelThreads() noexcept {
  const bool alone = StaysHere() || section_runs.load(std::memory_order_relaxed);
  return alone ? 1 : Processors();
}

void parallel::Run(std::size_t count, Task task) noexcept {
  const std::size_t threads = StaysHere() ? 1 : std::min(count, Processors());
  if (threads < 2 || section_runs.exchange(true, std::memory_order_acquire)) {
    for (std::size_t index = 0; index < count; ++index) task.run(task.object, index);
    return;
  }
  Section section(count, task);
  CallOnStandingThreads(
      threads - 1, [](void* context) { static_cast<Section*>(context)->TakePart(); }, &section);
  section_runs.store(false, std::memory_order_release);
}

}  // namespace zavrel
