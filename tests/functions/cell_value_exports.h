#pragma once
// The worksheet functions that fill a macro's arrays, as the host calls them.

#include "excel/xloper12.h"
#include "platform/export.h"

namespace zavrel {

ZAV_EXPORT XLOPER12* ZavrelGetCellValues(const XLOPER12* range, const XLOPER12* class_code);
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesPrivate(const XLOPER12* range, const XLOPER12* class_code,
                                                const char* id);
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesPrivate2(const XLOPER12* range, const XLOPER12* class_code,
                                                 const char* values_address,
                                                 const char* indices_address);
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesCategoryPrivate2(const XLOPER12* range,
                                                         const XLOPER12* class_code,
                                                         const char16_t* blank_name,
                                                         const char* values_address);
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesNumericPrivate2(const XLOPER12* range,
                                                        const XLOPER12* class_code,
                                                        double for_non_numbers,
                                                        const char* values_address);

ZAV_EXPORT XLOPER12* ZavrelCategoryNames(const XLOPER12* data);
ZAV_EXPORT XLOPER12* ZavrelCategoryNamesPrivate(const XLOPER12* data, const char* id);
ZAV_EXPORT XLOPER12* ZavrelCategoryIndices(const XLOPER12* data, const XLOPER12* name);
ZAV_EXPORT XLOPER12* ZavrelCategoryIndicesPrivate(const XLOPER12* data, const XLOPER12* name,
                                                  const char* id);
ZAV_EXPORT XLOPER12* ZavrelCategoryIndicesPrivate2(const XLOPER12* data, const XLOPER12* name,
                                                   const char* address);

}  // namespace zavrel
