#pragma once

#include <utility>

namespace zavrel {

/// Add or release a reference to an automation object; null is ignored. Without automation, on
/// systems other than Windows, they do nothing.
void AddAutomationReference(void* object) noexcept;
void ReleaseAutomationReference(void* object) noexcept;

/// A counted reference to an automation object; may be null.
class AutomationObject {
 public:
  AutomationObject() = default;
  explicit AutomationObject(void* object) : object_(object) { AddAutomationReference(object_); }
  AutomationObject(const AutomationObject&) = delete;
  AutomationObject& operator=(const AutomationObject&) = delete;
  AutomationObject(AutomationObject&& other) noexcept
      : object_(std::exchange(other.object_, nullptr)) {}
  AutomationObject& operator=(AutomationObject&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~AutomationObject() { ReleaseAutomationReference(object_); }

  void* get() const { return object_; }

 private:
  void* object_ = nullptr;
};

}  // namespace zavrel
