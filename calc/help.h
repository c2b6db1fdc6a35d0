#pragma once

#include "calc/uno_reference.h"

namespace zavcalc {

/// Has the system show the contents of the help, in the office's language where there are such
/// pages. `context` is the office's XComponentContext.
void OpenHelp(const UnoReference& context);

}  // namespace zavcalc
