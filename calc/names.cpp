#include "calc/names.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

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

/// While it lives, the document takes array formulas although its file is not writable, does not
/// record what can be undone, and does not tell its listeners of each cell.
class Entering {
 public:
  explicit Entering(const UnoReference& model)
      : properties_(model.As(u"com.sun.star.beans.XPropertySet")),
        modifiable_(model.As(u"com.sun.star.util.XModifiable")),
        undo_(model.As(u"com.sun.star.document.XUndoManagerSupplier")
                  .ObjectFrom(u"com.sun.star.document.XUndoManagerSupplier::getUndoManager", {})
                  .As(u"com.sun.star.util.XLockable")),
        views_(model.As(u"com.sun.star.frame.XModel")) {
    modifiable_.Call(u"com.sun.star.util.XModifiable::isModified", &was_modified_, {});
    undo_.Call(u"com.sun.star.util.XLockable::lock", nullptr, {});
    views_.Call(u"com.sun.star.frame.XModel::lockControllers", nullptr, {});
    SetReadOnlyChangeable(1);
  }
  Entering(const Entering&) = delete;
  Entering& operator=(const Entering&) = delete;
  ~Entering() {
    try {
      SetReadOnlyChangeable(0);
      views_.Call(u"com.sun.star.frame.XModel::unlockControllers", nullptr, {});
      undo_.Call(u"com.sun.star.util.XLockable::unlock", nullptr, {});
      modifiable_.Call(u"com.sun.star.util.XModifiable::setModified", nullptr, {&was_modified_});
    } catch (const CallFailure&) {  // the document counts as modified
    }
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
  UnoReference views_;
  sal_Bool was_modified_ = 0;
};

class Resolution {
 public:
  explicit Resolution(const UnoReference& model) : model_(model) {}

  void ResolveIn(const UnoReference& sheet) {
    for (const SheetRange& range : FormulaRanges(sheet)) {
      VisitFormulas(sheet, range,
                    [&](std::int32_t column, std::int32_t row, std::u16string_view text) {
                      if (HasPlainName(text)) Enter(sheet, CellAt(range.sheet, column, row), text);
                    });
    }
  }

 private:
  void Enter(const UnoReference& sheet, const SheetRange& cell, std::u16string_view text) {
    if (!entering_) entering_.emplace(model_);
    if (IsArrayFormula(text)) return EnterArray(sheet, cell, WithoutBraces(text));
    UnoText formula(text);
    SheetRange corner = cell;
    sheet
        .ObjectFrom(u"com.sun.star.table.XCellRange::getCellByPosition",
                    {&corner.first_column, &corner.first_row})
        .Call(u"com.sun.star.table.XCell::setFormula", nullptr, {formula.address()});
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
  std::optional<Entering> entering_;
};

}  // namespace

void ResolveNames(uno_Interface* model) {
  const UnoReference document = UnoReference::Sharing(model);
  Resolution resolution(document);
  for (const NamedSheet& sheet : SheetsOf(document)) resolution.ResolveIn(sheet.range);
}

}  // namespace zavcalc
