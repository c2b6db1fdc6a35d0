#include "calc/formula_entry.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "calc/call_sites.h"
#include "calc/formula_text.h"
#include "calc/function_names.h"
#include "calc/spreadsheet.h"
#include "calc/uno_reference.h"

namespace zavcalc {
namespace {

bool IsOurs(std::u16string_view name) {
  return std::ranges::binary_search(kAllFunctions, UpperCase(name));
}

/// Where the text that begins at `begin` with this quote ends; a doubled quote is one of the text.
std::size_t EndOfQuoted(std::u16string_view formula, std::size_t begin) {
  const std::size_t end = formula.find(formula[begin], begin + 1);
  return end == std::u16string_view::npos ? formula.size() : end + 1;
}

/// Whether a function of ours stands in the formula without the prefix.
bool HasPlainName(std::u16string_view formula) {
  std::size_t at = 0;
  while (at < formula.size()) {
    if (formula[at] == u'"' || formula[at] == u'\'') {
      at = EndOfQuoted(formula, at);
      continue;
    }
    const std::size_t begin = at;
    while (at < formula.size() && IsNamePart(formula[at])) ++at;
    const bool is_call = at < formula.size() && formula[at] == u'(';
    if (is_call && IsOurs(formula.substr(begin, at - begin))) return true;
    if (at == begin) ++at;
  }
  return false;
}

bool HasPrefix(std::u16string_view formula) {
  return formula.find(kPrefix) != std::u16string_view::npos;
}

/// While it lives, the document takes array formulas although its file is not writable, and does
/// not tell its listeners of each cell.
class Entering {
 public:
  explicit Entering(const UnoReference& model)
      : properties_(model.As(u"com.sun.star.beans.XPropertySet")),
        modifiable_(model.As(u"com.sun.star.util.XModifiable")),
        undo_(model.As(u"com.sun.star.document.XUndoManagerSupplier")
                  .ObjectFrom(u"com.sun.star.document.XUndoManagerSupplier::getUndoManager", {})
                  .As(u"com.sun.star.util.XLockable")),
        actions_(model.As(u"com.sun.star.document.XActionLockable")) {
    modifiable_.Call(u"com.sun.star.util.XModifiable::isModified", &was_modified_, {});
    actions_.Call(u"com.sun.star.document.XActionLockable::addActionLock", nullptr, {});
    SetReadOnlyChangeable(1);
  }
  Entering(const Entering&) = delete;
  Entering& operator=(const Entering&) = delete;
  ~Entering() {
    try {
      SetReadOnlyChangeable(0);
      actions_.Call(u"com.sun.star.document.XActionLockable::removeActionLock", nullptr, {});
      modifiable_.Call(u"com.sun.star.util.XModifiable::setModified", nullptr, {&was_modified_});
    } catch (const CallFailure&) {  // the document counts as modified
    }
  }

  /// Has `enter` enter a formula so that it cannot be undone. Calc records again after each one,
  /// whether it was told not to or not.
  template <class Enter>
  void WithoutUndo(const Enter& enter) const {
    undo_.Call(u"com.sun.star.util.XLockable::lock", nullptr, {});
    try {
      enter();
    } catch (const CallFailure&) {  // this formula stays as it is; others do not wait for it
    }
    undo_.Call(u"com.sun.star.util.XLockable::unlock", nullptr, {});
  }

 private:
  void SetReadOnlyChangeable(sal_Bool is_changeable) {
    UnoText name(u"IsChangeReadOnlyEnabled");
    uno_Any value;
    static const TypeReference type = SimpleType(typelib_TypeClass_BOOLEAN);
    uno_type_any_construct(&value, &is_changeable, type, nullptr);
    properties_.Call(u"com.sun.star.beans.XPropertySet::setPropertyValue", nullptr,
                     {name.address(), &value});
    uno_any_destruct(&value, nullptr);
  }

  UnoReference properties_;
  UnoReference modifiable_;
  UnoReference undo_;
  UnoReference actions_;
  sal_Bool was_modified_ = 0;
};

class FormulaEntry {
 public:
  /// Of a document; at most so many formulas.
  FormulaEntry(const UnoReference& model, std::size_t most) : model_(model), left_(most) {}

  /// Those in the ranges of the sheet that `is_wanted`.
  void EnterIn(const UnoReference& sheet, const std::vector<SheetRange>& ranges,
               bool (*is_wanted)(std::u16string_view)) {
    for (const SheetRange& range : ranges) {
      std::map<std::int32_t, std::vector<Formula>> columns;
      VisitFormulas(sheet, range,
                    [&](std::int32_t column, std::int32_t row, std::u16string_view text) {
                      if (left_ == 0 || !is_wanted(text)) return;
                      columns[column].push_back({row, std::u16string(text)});
                      --left_;
                    });
      for (const auto& [column, formulas] : columns) Enter(sheet, range.sheet, column, formulas);
    }
  }

 private:
  struct Formula {
    std::int32_t row;
    std::u16string text;
  };

  void Enter(const UnoReference& sheet, std::int32_t index, std::int32_t column,
             const std::vector<Formula>& formulas) {
    if (!entering_) entering_.emplace(model_);
    RemoveRuns(sheet, index, column, formulas);
    // Calc joins equal formulas to one group as they come, each time at the cost of the group: its
    // parts are joined at the end.
    constexpr std::int32_t kLongestGroup = 256;
    for (const bool are_joints : {false, true}) {
      for (const Formula& formula : formulas) {
        if ((formula.row % kLongestGroup == 0) != are_joints) continue;
        entering_->WithoutUndo(
            [&] { Enter(sheet, CellAt(index, column, formula.row), formula.text); });
      }
    }
  }

  static void Enter(const UnoReference& sheet, const SheetRange& cell, std::u16string_view text) {
    if (IsArrayFormula(text)) return EnterArray(sheet, cell, WithoutBraces(text));
    UnoText formula(text);
    SheetRange corner = cell;
    sheet
        .ObjectFrom(u"com.sun.star.table.XCellRange::getCellByPosition",
                    {&corner.first_column, &corner.first_row})
        .Call(u"com.sun.star.table.XCell::setFormula", nullptr, {formula.address()});
  }

  /// Formulas that Calc keeps together would be parted one by one, each time at the cost of all.
  void RemoveRuns(const UnoReference& sheet, std::int32_t index, std::int32_t column,
                  const std::vector<Formula>& formulas) const {
    for (std::size_t begin = 0, end = 0; begin < formulas.size();
         begin = std::max(end, begin + 1)) {
      end = begin;
      while (end < formulas.size() && !IsArrayFormula(formulas[end].text) &&
             formulas[end].row - formulas[begin].row == static_cast<std::int32_t>(end - begin))
        ++end;
      if (end <= begin + 1) continue;
      const SheetRange run{index, column, formulas[begin].row, column, formulas[end - 1].row};
      entering_->WithoutUndo([&] {
        std::int32_t formula_cells = 16;  // com.sun.star.sheet.CellFlags
        PartOf(sheet, run)
            .As(u"com.sun.star.sheet.XSheetOperation")
            .Call(u"com.sun.star.sheet.XSheetOperation::clearContents", nullptr, {&formula_cells});
      });
    }
  }

  /// Each cell of an array formula has its text, but only the whole range takes it: at its first
  /// cell.
  static void EnterArray(const UnoReference& sheet, const SheetRange& cell,
                         std::u16string_view text) {
    const UnoReference cursor = ArrayAround(sheet, cell);
    const SheetRange array = AddressOf(cursor);
    if (array.first_column != cell.first_column || array.first_row != cell.first_row) return;
    UnoText formula(text);
    cursor.As(u"com.sun.star.sheet.XArrayFormulaRange")
        .Call(u"com.sun.star.sheet.XArrayFormulaRange::setArrayFormula", nullptr,
              {formula.address()});
  }

  const UnoReference& model_;
  std::size_t left_;
  std::optional<Entering> entering_;
};

}  // namespace

void EnterPlainNames(const UnoReference& model) {
  FormulaEntry entry(model, std::numeric_limits<std::size_t>::max());
  for (const NamedSheet& sheet : SheetsOf(model))
    entry.EnterIn(sheet.range, FormulaRanges(sheet.range), &HasPlainName);
}

void EnterErrors(const UnoReference& model) {
  constexpr std::size_t kMost = 500;
  FormulaEntry entry(model, kMost);
  for (const NamedSheet& sheet : SheetsOf(model))
    entry.EnterIn(sheet.range, ErrorRanges(sheet.range), &HasPrefix);
}

}  // namespace zavcalc
