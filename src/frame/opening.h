#pragma once

#include "frame/session.h"

namespace zavrel {

/// Finds Excel's callback, opens the session and registers what is always registered. False after a
/// failure, which a message box has shown once; nothing is left open then.
bool OpenAddIn(AddIn add_in,
               SessionServices (*services)() = &SessionServices::OfThisMachine) noexcept;

/// Opens again what was open before in this process; false, and nothing done, if nothing was.
bool ReopenAddIn() noexcept;

/// Closes the session, if one is open.
void CloseAddIn() noexcept;

}  // namespace zavrel
