#pragma once
// Mutexes that are known to the system, or to the process, by name.

#include <memory>
#include <optional>
#include <string>

namespace zavrel {

/// A mutex that other programs find by its name: that it exists is the message. It is never locked.
/// Exists only on Windows; elsewhere it is an owner of nothing.
class NamedMutex {
 public:
  /// Opens the mutex, creating it when nobody has; nothing when the system refuses.
  static std::optional<NamedMutex> Open(const std::u16string& name);

 private:
  explicit NamedMutex(std::shared_ptr<void> mutex) : mutex_(std::move(mutex)) {}

  std::shared_ptr<void> mutex_;
};

/// A lock shared by all that name it within this process, and by no other process. A thread that
/// holds it may lock it again. Works with std::lock_guard.
class NamedLock {
 public:
  explicit NamedLock(const std::u16string& name);
  void lock();
  void unlock();

 private:
  std::shared_ptr<void> mutex_;
};

}  // namespace zavrel
