#include "frame/automation_object.h"

namespace zavrel {

void AddAutomationReference(void*) noexcept {}
void ReleaseAutomationReference(void*) noexcept {}

}  // namespace zavrel
