#pragma once
// What kinds of cells a sheet has, read from the document once for all ranges of it.

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "calc/cell_set.h"
#include "calc/sheet_range.h"
#include "calc/uno_reference.h"

namespace zavcalc {

/// What stands in a range beside plain numbers and texts.
struct Kinds {
  std::vector<SheetRange> blank;
  std::vector<SheetRange> logical;    // numbers that the cell shows as TRUE and FALSE
  std::vector<SheetRange> uncertain;  // single cells with formulas of any result
  bool has_formulas = false;
  bool IsPlain() const { return blank.empty() && logical.empty() && uncertain.empty(); }
};

class SheetCells {
 public:
  SheetCells(std::int32_t index, UnoReference sheet) : index_(index), sheet_(std::move(sheet)) {}

  const UnoReference& sheet() const { return sheet_; }
  UnoReference Part(const SheetRange& range) const;

  /// A range of formulas. `unplain` of its cells have a formula that may give a boolean or the
  /// like.
  void AddFormulas(const SheetRange& range) { formulas_.Add(range); }
  void AddUnplain(const SheetRange& cell) { unplain_.Add(cell); }
  void SortFormulas();

  bool HasFormulas(const SheetRange& range) const { return formulas_.Touches(range); }
  Kinds KindsOf(const SheetRange& range);

 private:
  void ReadKinds();

  std::int32_t index_;
  UnoReference sheet_;
  CellSet formulas_;
  CellSet unplain_;
  bool has_kinds_ = false;
  SheetRange used_;
  CellSet blank_;  // within the used area; beyond it every cell is
  CellSet logical_;
};

/// The key of a range's number format; nothing if its cells have several.
std::optional<std::int32_t> FormatOf(const UnoReference& range);
/// Whether this is the format of truth values.
bool IsLogical(std::int32_t format);

}  // namespace zavcalc
