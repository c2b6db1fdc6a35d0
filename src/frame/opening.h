#pragma once

#include "frame/session.h"

namespace zavrel {

/// Finds Excel's callback, opens the session and registers what is always registered. False after a
/// failure, which a message box has shown; nothing is left open then.
bool OpenAddIn(AddIn add_in,
               SessionServices (*services)() = &SessionServices::OfThisMachine) noexcept;

/// Opens the add-in again as it was last opened in this process. False if it fails or if the add-in
/// was never open.
bool ReopenAddIn() noexcept;

/// Closes the session, if one is open.
void CloseAddIn() noexcept;

}  // namespace zavrel
