#include "frame/automation_object.h"

#include <windows.h>

#include <unknwn.h>

namespace zavrel {

void AddAutomationReference(void* object) noexcept {
  if (object != nullptr) static_cast<IUnknown*>(object)->AddRef();
}

void ReleaseAutomationReference(void* object) noexcept {
  if (object != nullptr) static_cast<IUnknown*>(object)->Release();
}

}  // namespace zavrel
