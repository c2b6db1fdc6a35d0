// Makes an add-in that the program's own commands accept: they announce the companion to it.
#include "planted_faults/planted.h"

/// Nothing here needs what is announced. The arguments may stay where they are.
PLANTED_EXPORT void InitializeXlaInformationW() {}
