// What an add-in exports that the targets of the C API play.
#include "fuzz/owned_record.h"
#include "platform/export.h"

ZAV_EXPORT void xlAutoFree12(XLOPER12* record) { ++reinterpret_cast<OwnedRecord*>(record)->freed; }

/// What a registration may name.
ZAV_EXPORT void FuzzedProcedure() {}
