#pragma once

#include "data/cell_columns.h"
#include "excel/xxloper.h"

namespace zavrel {

/// Puts a cell's value into an array; a blank or omitted cell becomes an empty value.
inline void PutCell(XXloperArray& values, std::size_t index, const SingleValue& cell) {
  switch (cell.tag) {
    case CellTag::kNumber:
      return values.SetNumber(index, cell.number);
    case CellTag::kInteger:
      return values.SetNumber(index, cell.code);
    case CellTag::kText:
      return values.SetText(index, cell.text);
    case CellTag::kBoolean:
      return values.SetBoolean(index, cell.code != 0);
    case CellTag::kError:
      return values.SetError(index, cell.code);
    case CellTag::kMissing:
    case CellTag::kBlank:
      return values.SetEmpty(index);
  }
}

}  // namespace zavrel
