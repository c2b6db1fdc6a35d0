// The entry points that Excel calls to open and close the add-in.
#include <cstdint>

#include "excel/xxloper.h"
#include "frame/macro_call.h"
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

/// What Excel's list of add-ins asks for: the long name for action 1, #VALUE! for any other. Excel
/// also asks when the add-in is not open.
ZAV_EXPORT XLOPER12* xlAddInManagerInfo12(const XLOPER12* action) {
  const XLOPER12* answer = &XXloper::Error(ExcelError::kValue).record();
  UntracedCall([&] {
    const XXloper asked = XXloper::FromArgument(action);
    const bool name = (asked.Is(xltypeNum) && action->val.num == 1) ||
                      (asked.Is(xltypeInt) && action->val.w == 1);
    static const XXloper title = XXloper::Text(ThisAddIn().title);
    if (name) answer = &title.record();
  });
  return const_cast<XLOPER12*>(answer);  // Excel only reads it
}

// No value is ever marked for the library to free.
ZAV_EXPORT void xlAutoFree(void*) {}
ZAV_EXPORT void xlAutoFree12(void*) {}

}  // namespace zavrel
