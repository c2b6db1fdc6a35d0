#pragma once
// What the values of a call were in the cells of the document.
//
// Calc passes values and not references: TRUE arrives as 1, a blank cell as 0 or "", and of a range
// over several sheets only the first. Which formula calls is not said either. The document's
// formulas tell: of all calls of the function, those that can have passed these values are looked
// up in the cells. If they all mean the same, that is what the call means; if not, nobody can know,
// and the call fails.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "calc/call_index.h"
#include "calc/call_sites.h"
#include "calc/sheet_cells.h"
#include "calc/uno_reference.h"
#include "host/workbook/value.h"

namespace zavcalc {

/// Whether two operands hold the same values of the same kinds.
bool IsSame(const zavhost::Operand& a, const zavhost::Operand& b);

class Document : private RangeContents {
 public:
  explicit Document(UnoReference model) : model_(std::move(model)) {}

  /// Something in the document has changed: what was read before no longer counts.
  void Forget() {
    is_read_ = false;
    sheet_count_ = 0;
  }

  /// A call has given an error because it could not be known what it means.
  void SetInDoubt() { is_in_doubt_ = true; }
  /// Whether there was such a call since this was asked last.
  bool TakeDoubt() { return std::exchange(is_in_doubt_, false); }

  using Operands = std::vector<zavhost::Operand>;
  /// The arguments of a call with the kinds that their cells have: all that they can be. Empty if
  /// that cannot be known.
  std::vector<Operands> Resolve(std::u16string_view function,
                                std::span<const zavhost::Operand> arguments);
  /// The size of the range that an array formula fills with such a call; nothing if there is no
  /// such formula, or if there are several of different sizes.
  std::optional<FilledShape> ShapeFilledBy(std::u16string_view function,
                                           std::span<const zavhost::Operand> arguments);

 private:
  // Of the calls of one function.
  struct Calls {
    CallIndex index;
    bool has_several_sheets = false;  // some call gives a reference over several sheets
  };

  void Read();
  void ReadSheet(std::int32_t index);
  void AddFormula(std::int32_t sheet, std::int32_t column, std::int32_t row,
                  std::u16string_view text);
  bool IsNewArray(std::vector<CallSite>& calls, std::int32_t sheet, std::int32_t column,
                  std::int32_t row, std::u16string_view text);
  void AddUnreadable(std::u16string_view text);
  std::vector<AlikeCalls> CallsWith(const std::u16string& function,
                                    std::span<const zavhost::Operand> arguments);
  std::optional<SheetRange> RangeNamed(std::int32_t sheet, std::u16string_view name);
  static std::optional<SheetRange> NamedIn(const UnoReference& owner, std::u16string_view name);

  SheetCells& SheetOf(const SheetRange& range);
  Kinds KindsOf(const SheetRange& range) { return SheetOf(range).KindsOf(range); }
  std::uint64_t KindsMark(const SheetRange& range) override;
  bool HasFormulas(const SheetRange& range) override { return SheetOf(range).HasFormulas(range); }
  std::vector<zavhost::Value> ValuesOf(const SheetRange& range) override;
  bool MaySpanSheets(const std::u16string& function);

  bool IsExcluded(const CallSite& site, std::span<const zavhost::Operand> arguments);
  std::vector<Operands> At(const CallSite& site, std::span<const zavhost::Operand> arguments,
                           bool is_only_one);
  std::vector<zavhost::Operand> Meanings(const SiteArgument& argument,
                                         const zavhost::Operand& given, bool is_only_one);
  std::optional<zavhost::Operand> FromCells(const SheetRange& range, const zavhost::Operand& given,
                                            bool is_only_one);
  bool IsShownAsLogical(const SheetRange& cell);
  bool HoldsConstants(const SheetRange& range, const zavhost::Operand& given);

  UnoReference model_;
  bool is_in_doubt_ = false;
  bool is_read_ = false;
  std::size_t sheet_count_ = 0;  // 0 until counted
  std::vector<SheetCells> sheets_;
  std::unordered_map<std::u16string, std::int32_t> sheet_indices_;
  std::unordered_map<std::u16string, Calls> calls_;  // by function
  std::unordered_set<std::u16string> arrays_;        // array formulas of the sheet that is read
};

}  // namespace zavcalc
