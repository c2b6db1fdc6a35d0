#pragma once

#include "frame/application_table.h"

namespace zavrel {

/// Hands an announcement to the open session. If none is open, first opens the add-in again; if it
/// was never open, the announcement is dropped.
void AnnounceToSession(const Announcement& announcement);

}  // namespace zavrel
