#pragma once
// A pointer for each thread.

#include <cstdint>

namespace zavrel {

/// Owner of a slot that holds a pointer for each thread, initially null. A pointer that is not null
/// is destroyed when its thread ends, or when the slot is closed if that happens first; in that
/// case the destructor runs on the thread that closes the slot. No thread may use the slot while it
/// is being closed.
class ThreadSlot {
 public:
  using Destructor = void (*)(void* pointer);

  /// If the process has no free slot, Set always fails.
  explicit ThreadSlot(Destructor destructor);
  ~ThreadSlot();
  ThreadSlot(const ThreadSlot&) = delete;
  ThreadSlot& operator=(const ThreadSlot&) = delete;

  /// False if the process had no slot left.
  bool ok() const noexcept;
  void* Get() const noexcept;
  /// Takes ownership of the pointer without destroying the previous one. Returns false, and takes
  /// nothing, without memory or a slot.
  bool Set(void* pointer) noexcept;

 private:
  Destructor destructor_;
  std::uintptr_t slot_ = 0;
};

}  // namespace zavrel
