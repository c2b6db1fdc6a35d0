// The worksheet functions through which a macro reads a range's cells into arrays of its own:
// ZavGetCellValuesPrivate2, its two companions, and ZavGetCellValuesPrivate.
//
// All of them list the cells of a class in their order (of whole columns and rows the used part)
// and return how many they are. #VALUE! for a class code that names none, for a text that is no
// address or id, for an address that the session did not issue lately, for a VARIANT that must not
// be written (macros/macro_arrays.h) and when memory does not suffice; the VARIANTs are then left
// as they were, without memory empty. #REF! for cells that cannot be read, and while one that is
// needed is not calculated yet; then nothing was touched and all stays arranged for the next call.
#include "functions/macro_cell_values.h"

#include <new>
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

/// Calls `use` with each cell's position, from 0.
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

/// Makes the elements that the cells of a class become; nothing when the host wants the call to
/// end.
class ElementMaker {
 public:
  ElementMaker(const ExcelData& data, CellClass cell_class, std::size_t count)
      : data_(data), class_(cell_class), count_(count) {}

  std::optional<MacroElements> operator()(const ValueElements&) const {
    return List<SingleValue>([&](std::size_t i) { return data_[i]; });
  }
  std::optional<MacroElements> operator()(const NumericElements& numeric) const {
    return List<double>([&](std::size_t i) {
      return data_[i].IsNumber() ? data_[i].number : numeric.for_non_numbers;
    });
  }
  std::optional<MacroElements> operator()(const CategoryElements& category) const {
    bool ended = false;
    auto names = List<std::u16string>([&](std::size_t i) {
      auto name = ended ? std::nullopt : CategoryNameOf(data_[i]);
      ended = !name;
      if (ended) return std::u16string();
      return name->empty() ? category.blank_name : *std::move(name);
    });
    if (ended) return std::nullopt;
    return names;
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

struct FillResult {
  XXloper value;
  bool uncalculated = false;
};

FillResult Fill(const ExcelData& data, CellClass cell_class, const PendingCellValues& wanted) {
  try {
    const std::size_t count = CountListed(data, cell_class);
    const ElementMaker maker(data, cell_class, count);
    MacroArray arrays[kMostMacroArrays] = {{wanted.values, {}}, {wanted.indices, {}}};
    if (wanted.values != 0) {
      auto elements = std::visit(maker, wanted.elements);
      if (!elements) return {XXloper::Error(ExcelError::kRef), true};
      arrays[0].elements = *std::move(elements);
    }
    if (wanted.indices != 0) arrays[1].elements = maker.Positions();
    if (WriteMacroArrays(arrays)) return {XXloper::Number(static_cast<double>(count))};
  } catch (const std::bad_alloc&) {
    WriteMacroArrays(std::array{MacroArray{wanted.values, {}}, MacroArray{wanted.indices, {}}});
  }
  return {XXloper::Error(ExcelError::kValue)};
}

/// Reads range and class, then has `fill` make the result from the data set and the class.
template <class Filler>
XXloper FromCells(const XLOPER12* range, const XLOPER12* class_code, Filler fill) {
  try {
    const Parameters parameters = RangeAndClass(range, class_code);
    if (!parameters.accepted()) return parameters.failure();
    const auto cell_class = ClassOf(parameters.integer(1));
    if (!cell_class) return XXloper::Error(ExcelError::kValue);
    return fill(parameters.data(0), *cell_class);
  } catch (const std::bad_alloc&) {
    return XXloper::Error(ExcelError::kValue);
  }
}

XXloper FillByAddress(const XLOPER12* range, const XLOPER12* class_code, CellElements elements,
                      const char* values_address, const char* indices_address) {
  return FromCells(range, class_code, [&](const ExcelData& data, CellClass cell_class) {
    const MacroHandshakes& handshakes = Session::Current()->Kept<MacroHandshakes>();
    const auto values = handshakes.IssuedAddress(values_address);
    const auto indices = handshakes.IssuedAddress(indices_address);
    if (!values || !indices) return XXloper::Error(ExcelError::kValue);
    return Fill(data, cell_class, {std::move(elements), *values, *indices}).value;
  });
}

XXloper FillById(const ExcelData& data, CellClass cell_class, const char* id) {
  MacroHandshakes& handshakes = Session::Current()->Kept<MacroHandshakes>();
  const std::string key = id == nullptr ? "" : id;
  const auto* wanted = handshakes.Find<PendingCellValues>(key);
  if (wanted == nullptr) return XXloper::Error(ExcelError::kValue);
  const FillResult result = Fill(data, cell_class, *wanted);
  if (!result.uncalculated) handshakes.Remove(key);
  return result.value;
}

}  // namespace

std::optional<XXloper> FillNextCellValues(const ExcelData& data, CellClass cell_class) {
  std::optional<PendingCellValues>& slot =
      Session::Current()->Kept<MacroHandshakes>().next_cell_values();
  if (!slot) return std::nullopt;
  // Taken out first: what the macro's VARIANTs held may arrange something new as it goes.
  PendingCellValues wanted = *std::move(slot);
  slot.reset();
  const FillResult result = Fill(data, cell_class, wanted);
  if (result.uncalculated && !slot) slot = std::move(wanted);
  return result.value;
}

/// The cells' values into one VARIANT and their positions in the range, from 1, into another; each
/// of them only where its address is given.
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesPrivate2(const XLOPER12* range, const XLOPER12* class_code,
                                                 const char* values_address,
                                                 const char* indices_address) {
  return WorksheetFunction("ZavrelGetCellValuesPrivate2", [&] {
    return FillByAddress(range, class_code, ValueElements{}, values_address, indices_address);
  });
}

/// The cells' category names, as wide strings; `blank_name` for those without one.
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesCategoryPrivate2(const XLOPER12* range,
                                                         const XLOPER12* class_code,
                                                         const char16_t* blank_name,
                                                         const char* values_address) {
  return WorksheetFunction("ZavrelGetCellValuesCategoryPrivate2", [&] {
    CategoryElements category{blank_name == nullptr ? u"" : blank_name};
    return FillByAddress(range, class_code, std::move(category), values_address, nullptr);
  });
}

/// The cells' numbers; `for_non_numbers` for those that hold none.
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesNumericPrivate2(const XLOPER12* range,
                                                        const XLOPER12* class_code,
                                                        double for_non_numbers,
                                                        const char* values_address) {
  return WorksheetFunction("ZavrelGetCellValuesNumericPrivate2", [&] {
    return FillByAddress(range, class_code, NumericElements{for_non_numbers}, values_address,
                         nullptr);
  });
}

/// Into the arrays that a macro entered under the id, as it wanted. The entry is used up when they
/// were written or could not be.
ZAV_EXPORT XLOPER12* ZavrelGetCellValuesPrivate(const XLOPER12* range, const XLOPER12* class_code,
                                                const char* id) {
  return WorksheetFunction("ZavrelGetCellValuesPrivate", [&] {
    return FromCells(range, class_code, [&](const ExcelData& data, CellClass cell_class) {
      return FillById(data, cell_class, id);
    });
  });
}

}  // namespace zavrel
