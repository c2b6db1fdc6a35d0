#include "platform/named_mutex.h"

#include <map>
#include <mutex>

namespace zavrel {
namespace {

std::recursive_mutex& MutexOf(const std::shared_ptr<void>& mutex) {
  return *static_cast<std::recursive_mutex*>(mutex.get());
}

}  // namespace

std::optional<NamedMutex> NamedMutex::Open(const std::u16string&) { return NamedMutex(nullptr); }

NamedLock::NamedLock(const std::u16string& name) {
  static std::mutex names_mutex;
  static std::map<std::u16string, std::weak_ptr<void>> names;
  const std::lock_guard guard(names_mutex);
  std::weak_ptr<void>& known = names[name];
  mutex_ = known.lock();
  if (mutex_ == nullptr) known = mutex_ = std::make_shared<std::recursive_mutex>();
}

void NamedLock::lock() { MutexOf(mutex_).lock(); }

void NamedLock::unlock() { MutexOf(mutex_).unlock(); }

}  // namespace zavrel
