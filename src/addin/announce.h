#pragma once

#include "addin/application_table.h"

namespace zavrel {

/// Hands an announcement to the open session. Without one it is noted in the log, if there is one,
/// and forgotten.
void AnnounceToSession(const Announcement& announcement);

}  // namespace zavrel
