#pragma once

#include <windows.h>

#include <utility>

namespace zavrel {

/// Owner of a handle that CloseHandle closes: of a file, a process, a mutex, a snapshot.
class SystemHandle {
 public:
  SystemHandle() = default;
  /// The system has two marks for no handle, and either counts as none.
  explicit SystemHandle(HANDLE handle) noexcept
      : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  SystemHandle(SystemHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  SystemHandle& operator=(SystemHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~SystemHandle() {
    if (handle_ != nullptr) CloseHandle(handle_);
  }

  explicit operator bool() const { return handle_ != nullptr; }
  /// Null if there is none.
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_ = nullptr;
};

}  // namespace zavrel
