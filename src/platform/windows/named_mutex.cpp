#include "platform/named_mutex.h"

#include "platform/utf.h"
#include "platform/windows/private_access.h"
#include "platform/windows/system_handle.h"
#include "platform/windows/wide.h"

namespace zavrel {
namespace {

std::shared_ptr<void> Owned(HANDLE mutex) {
  const auto owner = std::make_shared<SystemHandle>(mutex);
  return {owner, owner->get()};
}

/// Null if the system refuses.
std::shared_ptr<void> CreateNamed(const std::u16string& name) {
  PrivateAccess access;
  if (!access) return nullptr;
  return Owned(CreateMutexW(access.get(), FALSE, ToWide(name).c_str()));
}

}  // namespace

std::optional<NamedMutex> NamedMutex::Open(const std::u16string& name) {
  auto mutex = CreateNamed(name);
  if (mutex == nullptr) return std::nullopt;
  return NamedMutex(std::move(mutex));
}

NamedLock::NamedLock(const std::u16string& name) {
  // The process id prevents two running programs from waiting for each other.
  mutex_ = CreateNamed(name + u" " + Utf16FromUtf8(std::to_string(GetCurrentProcessId())));
  // If the name belongs to another kind of object, use a lock without a name.
  if (mutex_ == nullptr) mutex_ = Owned(CreateMutexW(nullptr, FALSE, nullptr));
}

// If a thread ends while it holds the lock, the next one gets it (WAIT_ABANDONED).
void NamedLock::lock() { WaitForSingleObject(mutex_.get(), INFINITE); }

void NamedLock::unlock() { ReleaseMutex(mutex_.get()); }

}  // namespace zavrel
