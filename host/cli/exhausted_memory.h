#pragma once

#include "host/capi/callback.h"

/// The new-handler of the program, and of the libraries that it loads
/// (contracts/exhausted_memory.h): ends the program with a line and kExitError, without any memory.
/// Nothing is left to go on with: a formula that got none would show an error as if that were its
/// value.
ZAVHOST_EXPORT void ZavrelMemoryExhausted();
