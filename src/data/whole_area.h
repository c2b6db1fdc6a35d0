#pragma once

#include "excel/xloper12.h"

namespace zavrel {

constexpr bool IsWholeColumns(const XLREF12& area) {
  return area.rwFirst == 0 && area.rwLast == kExcelRows - 1;
}
constexpr bool IsWholeRows(const XLREF12& area) {
  return area.colFirst == 0 && area.colLast == kExcelColumns - 1;
}
/// True for an area that counts as its used part.
constexpr bool IsWhole(const XLREF12& area) { return IsWholeColumns(area) || IsWholeRows(area); }

}  // namespace zavrel
