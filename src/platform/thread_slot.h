#pragma once
// A pointer per thread.

#include <cstdint>

namespace zavrel {

/// Owner of one slot that holds a pointer for each thread, null at first. A pointer that is not
/// null is destroyed when its thread ends or when the slot goes, whichever is first; then the
/// destructor runs on the thread that closes the slot. No thread may use the slot while it is being
/// closed.
class ThreadSlot {
 public:
  using Destructor = void (*)(void* pointer);

  /// Without a free slot in the process, Set always fails.
  explicit ThreadSlot(Destructor destructor);
  ~ThreadSlot();
  ThreadSlot(const ThreadSlot&) = delete;
  ThreadSlot& operator=(const ThreadSlot&) = delete;

  /// False when the process had no slot left.
  bool ok() const noexcept;
  void* Get() const noexcept;
  /// Takes the pointer over without destroying the one before. False, and nothing taken, without
  /// memory or a slot.
  bool Set(void* pointer) noexcept;

 private:
  Destructor destructor_;
  std::uintptr_t slot_;
};

}  // namespace zavrel
