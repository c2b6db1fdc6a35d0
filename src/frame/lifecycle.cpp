// The entry points that Excel calls to open and close the add-in.
#include <cstdint>

#include "frame/opening.h"
#include "platform/export.h"

namespace zavrel {

/// Opens the session and registers what is always registered. 1 on success and when it is already
/// open; 0 after a failure, which has been shown.
ZAV_EXPORT std::int32_t xlAutoOpen() { return OpenAddIn(ThisAddIn()) ? 1 : 0; }

/// Unregisters everything and closes the session, if one is open. Excel calls this before it asks
/// whether to save, and the user may cancel: opening again afterwards starts a new session.
ZAV_EXPORT std::int32_t xlAutoClose() {
  CloseAddIn();
  return 1;
}

ZAV_EXPORT std::int32_t xlAutoAdd() { return 1; }
ZAV_EXPORT std::int32_t xlAutoRemove() { return 1; }

// No value is ever marked for the library to free.
ZAV_EXPORT void xlAutoFree(void*) {}
ZAV_EXPORT void xlAutoFree12(void*) {}

}  // namespace zavrel
