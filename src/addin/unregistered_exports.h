#pragma once
// What the add-in exports beside the rows of the registration tables: called by Excel itself or by
// a macro add-in, never from a formula. A test holds the built library's exports against the tables
// and this list.

namespace zavrel {

inline constexpr const char* kUnregisteredExports[] = {
    // Excel
    "xlAutoOpen",
    "xlAutoClose",
    "xlAutoAdd",
    "xlAutoRemove",
    "xlAutoFree",
    "xlAutoFree12",
    // announce and withdraw
    "InitializeXlaInformationW",
    "InitializeXlaInformationVB",
    "UninitializeXlaInformation",
    // macro add-in
    "ZavrelGetExceptionInfoVB",
    "ZavrelWriteRangeVB",
};

}  // namespace zavrel
