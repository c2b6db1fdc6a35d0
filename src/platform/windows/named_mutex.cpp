#include "platform/named_mutex.h"

#include "platform/utf.h"
#include "platform/windows/wide.h"

namespace zavrel {
namespace {

struct CloseMutex {
  void operator()(void* mutex) const noexcept { CloseHandle(mutex); }
};

std::unique_ptr<void, CloseMutex> CreateNamed(const std::u16string& name) {
  return std::unique_ptr<void, CloseMutex>(CreateMutexW(nullptr, FALSE, ToWide(name).c_str()));
}

}  // namespace

std::optional<NamedMutex> NamedMutex::Open(const std::u16string& name) {
  auto mutex = CreateNamed(name);
  if (mutex == nullptr) return std::nullopt;
  return NamedMutex(std::move(mutex));
}

NamedLock::NamedLock(const std::u16string& name) {
  // The process id prevents two running programs from waiting for each other.
  auto mutex = CreateNamed(name + u" " + Utf16FromUtf8(std::to_string(GetCurrentProcessId())));
  // If the name belongs to another kind of object, use a lock without a name.
  if (mutex == nullptr) mutex.reset(CreateMutexW(nullptr, FALSE, nullptr));
  mutex_ = std::move(mutex);
}

// If a thread ends while it holds the lock, the next one gets it (WAIT_ABANDONED).
void NamedLock::lock() { WaitForSingleObject(mutex_.get(), INFINITE); }

void NamedLock::unlock() { ReleaseMutex(mutex_.get()); }

}  // namespace zavrel
