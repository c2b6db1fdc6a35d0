// The worksheet functions that read a range's cells into a macro's arrays:
// ZavGetCellValuesPrivate2, its Category and Numeric forms, and ZavGetCellValuesPrivate.
//
// All list the cells of a class in their order (of whole columns and rows the used part) and return
// their number. #VALUE! for an unknown class code, for a text that is not an address or id, for an
// address that the session did not issue lately, for a VARIANT that must not be written
// (macros/macro_arrays.h) and when memory runs out. The VARIANTs then stay as they were, or become
// empty if memory ran out. #REF! for cells that cannot be read and while a cell is not calculated
// yet; in that case nothing is changed, and everything stays arranged for the next call.
#include "functions/macro_cell_values.h"

#include <utility>
#include <vector>

#include "data/category_name.h"
#include "frame/session.h"
#include "frame/worksheet_function.h"
#include "functions/range_and_class.h"
#include "macros/macro_arrays.h"
#include "macros/macro_handshakes.h"
#include "platform/export.h"

namespace zavrel {
namespace {

/// Calls `use` with the position, from 0, of each cell of the class.
template <class Use>
void ForEachOfClass(const ExcelData& data, CellClass cell_class, Use use) {
  const std::span<const CellTag> tags = data.cells().tags();
  for (std::size_t i = 0; i < tags.size(); ++i) {
    if (BelongsTo(tags[i], cell_class)) use(i);
  }
}

std::size_t CountListed(const ExcelData& data, CellClass cell_class) {
  std::size_t count = 0;
  ForEachOfClass(data, cell_class, [&](std::size_t) { ++count; });
  return count;
}

/// Makes the elements of a macro's array from the cells of a class.
class ElementMaker {
 public:
  ElementMaker(const ExcelData& data, CellClass cell_class, std::size_t count)
      : data_(data), class_(cell_class), count_(count) {}

  OrFailure<MacroElements> operator()(const ValueElements&) const {
    return List<SingleValue>([&](std::size_t i) { return data_[i]; });
  }
  OrFailure<MacroElements> operator()(const NumericElements& numeric) const {
    return List<double>([&](std::size_t i) {
      return data_[i].IsNumber() ? data_[i].number : numeric.for_non_numbers;
    });
  }
  OrFailure<MacroElements> operator()(const CategoryElements& category) const {
    std::optional<Failure> failure;
    MacroElements names = List<std::u16string>([&](std::size_t i) {
      OrFailure<std::u16string> name = failure ? *failure : CategoryNameOf(data_[i]);
      if (name.ok()) return name->empty() ? category.blank_name : *std::move(name);
      failure = name.failure();
      return std::u16string();
    });
    if (failure) return *failure;
    return MacroElements(std::move(names));
  }
  MacroElements Positions() const {
    return List<std::int32_t>([](std::size_t i) { return static_cast<std::int32_t>(i + 1); });
  }

 private:
  template <class Element, class Convert>
  MacroElements List(Convert convert) const {
    std::vector<Element> elements;
    elements.reserve(count_);
    ForEachOfClass(data_, class_, [&](std::size_t i) { elements.push_back(convert(i)); });
    return elements;
  }

  const ExcelData& data_;
  CellClass class_;
  std::size_t count_;
};

CellResult Fill(const ExcelData& data, CellClass cell_class, const PendingCellValues& wanted) {
  const std::size_t count = CountListed(data, cell_class);
  const ElementMaker maker(data, cell_class, count);
  MacroArray arrays[kMostMacroArrays] = {{wanted.values, {}}, {wanted.indices, {}}};
  const auto make = [&]() -> std::optional<Failure> {
    if (wanted.values != 0) {
      OrFailure<MacroElements> elements = std::visit(maker, wanted.elements);
      if (!elements.ok()) return elements.failure();
      arrays[0].elements = *std::move(elements);
    }
    if (wanted.indices != 0) arrays[1].elements = maker.Positions();
    return std::nullopt;
  };
  if (const auto failure = FillMacroArrays(arrays, make)) return *failure;
  return count;
}

constexpr Reading kCells = kRangeAndClass.WithoutMemory(ExcelError::kValue);

/// A worksheet function that reads range and class; `fill` makes its result from the data set and
/// the class.
template <class Filler>
XLOPER12* FromCells(const char* name, const Reading& reading, const XLOPER12* range,
                    const XLOPER12* class_code, Filler fill) noexcept {
  return WorksheetFunction(name, reading, {range, class_code},
                           [&](const Parameters& read) -> CellResult {
                             const OrFailure<CellClass> cell_class = ClassIn(read);
                             if (!cell_class.ok()) return cell_class.failure();
                             return fill(read.data(0), *cell_class);
                           });
}

/// elements() says what the cells become.
template <class Elements>
XLOPER12* FillByAddress(const char* name, const XLOPER12* range, const XLOPER12* class_code,
                        Elements elements, const char* values_address,
                        const char* indices_address = nullptr) noexcept {
  return FromCells(name, kCells, range, class_code,
                   [&](const ExcelData& data, CellClass cell_class) -> CellResult {
                     auto& handshakes = Session::Current()->Kept<MacroHandshakes>();
                     const auto values = handshakes.IssuedAddress(values_address);
                     const auto indices = handshakes.IssuedAddress(indices_address);
                     if (!values || !indices) return Failure(ExcelError::kValue);
                     CellResult result = Fill(data, cell_class, {elements(), *values, *indices});
                     if (result.is_final()) {
                       handshakes.UseUp(*values);
                       handshakes.UseUp(*indices);
                     }
                     return result;
                   });
}

CellResult FillById(const ExcelData& data, CellClass cell_class, const char* id) {
  auto& handshakes = Session::Current()->Kept<MacroHandshakes>();
  const auto* entry = handshakes.Find<PendingCellValues>(id == nullptr ? "" : id);
  if (entry == nullptr) return Failure(ExcelError::kValue);
  // Copied: the release of the VARIANTs' old contents may run code that changes the entries.
  const PendingCellValues wanted = *entry;
  CellResult result = Fill(data, cell_class, wanted);
  if (result.ok()) handshakes.Take<PendingCellValues>(id);
  return result;
}

void ForgetEntry(const char* id) {
  Session::Current()->Kept<MacroHandshakes>().Take<PendingCellValues>(id);
}

}  // namespace

std::optional<CellResult> FillNextCellValues(const ExcelData& data, CellClass cell_class) {
  std::optional<PendingCellValues>& slot =
      Session::Current()->Kept<MacroHandshakes>().next_cell_values();
  if (!slot) return std::nullopt;
  // Taken out first: the release of the VARIANTs' old contents may run code that arranges something
  // new.
  PendingCellValues wanted = *std::exchange(slot, std::nullopt);
  CellResult result = Fill(data, cell_class, wanted);
  if (!result.ok() && result.failure().uncalculated() && !slot) slot = std::move(wanted);
  return result;
}

void ForgetNextCellValues() {
  Session::Current()->Kept<MacroHandshakes>().next_cell_values().reset();
}

/// Writes the cells' values into one VARIANT and their positions in the range, from 1, into
/// another. Either address may be left out.
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesPrivate2(const XLOPER12* range, const XLOPER12* class_code,
                                                 const char* values_address,
                                                 const char* indices_address) {
  return FillByAddress(
      "ZavrelGetCellValuesPrivate2", range, class_code, [] { return ValueElements{}; },
      values_address, indices_address);
}

/// Writes the cells' category names as wide strings, `blank_name` for cells without one.
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesCategoryPrivate2(const XLOPER12* range,
                                                         const XLOPER12* class_code,
                                                         const char16_t* blank_name,
                                                         const char* values_address) {
  return FillByAddress(
      "ZavrelGetCellValuesCategoryPrivate2", range, class_code,
      [&] { return CategoryElements{blank_name == nullptr ? u"" : blank_name}; }, values_address);
}

/// Writes the cells' numbers, `for_non_numbers` for cells that do not hold one.
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesNumericPrivate2(const XLOPER12* range,
                                                        const XLOPER12* class_code,
                                                        double for_non_numbers,
                                                        const char* values_address) {
  return FillByAddress(
      "ZavrelGetCellValuesNumericPrivate2", range, class_code,
      [&] { return NumericElements{for_non_numbers}; }, values_address);
}

/// Writes the arrays that a macro entered under the id, in the form that it chose. The entry is
/// used up, whether the call succeeds or fails, unless a cell is not calculated yet.
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesPrivate(const XLOPER12* range, const XLOPER12* class_code,
                                                const char* id) {
  return FromCells(
      "ZavrelGetCellValuesPrivate", kCells.OnFailure([&] { ForgetEntry(id); }), range, class_code,
      [&](const ExcelData& data, CellClass cell_class) { return FillById(data, cell_class, id); });
}

}  // namespace zavrel
