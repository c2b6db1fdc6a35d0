#pragma once

#include "frame/application_table.h"

namespace zavrel {

/// Hands an announcement to the open session; opens the add-in again if it was open before.
/// Forgotten if it never was.
void AnnounceToSession(const Announcement& announcement);

}  // namespace zavrel
