#pragma once

#include <windows.h>

#include <array>
#include <cstddef>

namespace zavrel {

/// The security attributes of what this process creates by name: its user and the system may do
/// everything, and nobody else anything, whatever a folder or the process would pass on.
class PrivateAccess {
 public:
  PrivateAccess() noexcept : is_complete_(Complete()) {}
  PrivateAccess(const PrivateAccess&) = delete;
  PrivateAccess& operator=(const PrivateAccess&) = delete;

  /// False if the system does not say who the user is.
  explicit operator bool() const { return is_complete_; }
  /// As the functions that create an object take them; they belong to this object.
  SECURITY_ATTRIBUTES* get() { return &attributes_; }

 private:
  bool Complete() noexcept;

  alignas(ACL) std::array<std::byte, 256> list_;  // room for two entries of any size
  SECURITY_DESCRIPTOR descriptor_{};
  SECURITY_ATTRIBUTES attributes_{sizeof attributes_, &descriptor_, FALSE};
  bool is_complete_;
};

}  // namespace zavrel
