#pragma once
// Mutexes with a name in the system or in the process.

#include <memory>
#include <optional>
#include <string>

namespace zavrel {

/// A mutex that other programs can find by its name. Only its existence matters; it is never
/// locked. On systems other than Windows it owns nothing.
class NamedMutex {
 public:
  /// Opens the mutex, and creates it if it does not exist; nothing if the system refuses.
  static std::optional<NamedMutex> Open(const std::u16string& name);

 private:
  explicit NamedMutex(std::shared_ptr<void> mutex) : mutex_(std::move(mutex)) {}

  std::shared_ptr<void> mutex_;
};

/// A lock shared by all its users by name in this process, but not with other processes. A thread
/// that holds it may lock it again. Works with std::lock_guard.
class NamedLock {
 public:
  explicit NamedLock(const std::u16string& name);
  void lock();
  void unlock();

 private:
  std::shared_ptr<void> mutex_;
};

}  // namespace zavrel
