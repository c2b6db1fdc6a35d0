#include "platform/parallel.h"

#include <algorithm>
#include <atomic>
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
thread_local int calling_thread_only = 0;

std::size_t Processors() noexcept {
  static const std::size_t processors = std::max(1u, std::thread::hardware_concurrency());
  return processors;
}

}  // namespace

CallingThreadOnly::CallingThreadOnly() noexcept { ++calling_thread_only; }
CallingThreadOnly::~CallingThreadOnly() { --calling_thread_only; }

std::size_t ParallelThreads() noexcept {
  const bool alone = calling_thread_only > 0 || section_runs.load(std::memory_order_relaxed);
  return alone ? 1 : Processors();
}

void parallel::Run(std::size_t count, Task task) noexcept {
  const std::size_t threads = calling_thread_only > 0 ? 1 : std::min(count, Processors());
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
