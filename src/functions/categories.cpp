// The categories of a data set: ZavCountCategories ... ZavCategoryNameCompare, and the functions
// through which a macro gets their names and positions into arrays of its own.
//
// Numbers and booleans are categories by the host's text for them. Where the host has still to
// calculate something, a call returns #REF! at once and comes again.
#include <algorithm>

#include "data/category_table.h"
#include "frame/worksheet_function.h"
#include "functions/calling_array.h"
#include "functions/category_arrays.h"
#include "platform/export.h"
#include "platform/letter_case.h"

namespace zavrel {
namespace {

constexpr Reading kData =
    Reading("R", MissingDataPolicy::kNumbersOnly).WithoutMemory(ExcelError::kValue);
constexpr Reading kDataAndName =
    Reading("RS", MissingDataPolicy::kNumbersOnly).WithoutMemory(ExcelError::kValue);

/// Has `use` make the result of the data's categories.
template <class Use>
XLOPER12* OfCategories(const char* name, const XLOPER12* data, Use use) noexcept {
  return WorksheetFunction(name, kData, {data}, [&](const Parameters& read) -> CellResult {
    const CategoryTable* categories = read.data(0).Categories();
    if (categories == nullptr) return Failure::Uncalculated();
    return use(*categories);
  });
}

using Positions = std::span<const std::int32_t>;

/// Has `use` make the result of the positions of the category that a name stands for; they are none
/// when it stands for none.
template <class Use>
XLOPER12* OfPositions(const char* name, const XLOPER12* data, const XLOPER12* category_name,
                      Use use) noexcept {
  return WorksheetFunction(
      name, kDataAndName, {data, category_name}, [&](const Parameters& read) -> CellResult {
        const CategoryTable* categories = read.data(0).Categories();
        if (categories == nullptr) return Failure::Uncalculated();
        const Category* category = categories->Find(read.text(1));
        return use(category != nullptr ? Positions(category->positions) : Positions());
      });
}

/// The names over the calling range; a single cell gets them all in a column, which spreads where
/// Excel spreads results.
CellResult NamesForCaller(CategoryNames names) {
  OrFailure<XXloperArray> array = ArrayOfCaller();
  if (!array.ok()) return array.failure();
  if (array->size() == 1 && names.size() > 1) {
    const auto rows = std::min<std::size_t>(names.size(), kMostResultRows);
    *array = XXloperArray(static_cast<std::int32_t>(rows), 1);
  }
  for (std::size_t i = 0; i < std::min(names.size(), array->size()); ++i)
    array->SetText(i, names[i]);
  return (*std::move(array)).Finish();
}

CellResult PositionsForCaller(Positions positions) {
  OrFailure<XXloperArray> array = ArrayOfCaller();
  if (!array.ok()) return array.failure();
  for (std::size_t i = 0; i < std::min(positions.size(), array->size()); ++i)
    array->SetNumber(i, positions[i] + 1.0);
  return (*std::move(array)).Finish();
}

}  // namespace

/// How many categories the data have.
ZAV_EXPORT XLOPER12* ZavrelCountCategories(const XLOPER12* data) {
  return OfCategories("ZavrelCountCategories", data,
                      [](const CategoryTable& categories) { return categories.size(); });
}

/// An array formula: the categories' names (CategoryTable::SortedNames) row by row over the calling
/// range, #N/A where there are no more. Called from elsewhere than cells: #REF!. When a macro has
/// arranged an array for this call, that gets the names, and the result is how many these are.
ZAV_EXPORT XLOPER12* ZavrelCategoryNames(const XLOPER12* data) {
  return OfCategories("ZavrelCategoryNames", data, [](const CategoryTable& categories) {
    const auto filled = FillNextCategoryNames(categories.SortedNames());
    return filled ? *filled : NamesForCaller(categories.SortedNames());
  });
}

/// The names as strings into the VARIANT whose address is given; without one their count alone.
ZAV_EXPORT XLOPER12* ZavrelCategoryNamesPrivate2(const XLOPER12* data, const char* address) {
  return OfCategories("ZavrelCategoryNamesPrivate2", data, [&](const CategoryTable& categories) {
    return FillNamesByAddress(categories.SortedNames(), address);
  });
}

/// The names into the array that a macro entered under the id.
ZAV_EXPORT XLOPER12* ZavrelCategoryNamesPrivate(const XLOPER12* data, const char* id) {
  return OfCategories("ZavrelCategoryNamesPrivate", data, [&](const CategoryTable& categories) {
    return FillNamesById(categories.SortedNames(), id);
  });
}

/// How many cells belong to the category that the name stands for; 0 when it is none.
ZAV_EXPORT XLOPER12* ZavrelCategoryOccurrenceCount(const XLOPER12* data, const XLOPER12* name) {
  return OfPositions("ZavrelCategoryOccurrenceCount", data, name,
                     [](Positions positions) { return positions.size(); });
}

/// An array formula: where the category's cells stand in the data, from 1, row by row over the
/// calling range, #N/A where there are no more. A name that is no category: #N/A. Called from
/// elsewhere than cells: #REF!. When a macro has arranged an array for this call, that gets the
/// positions, and the result is how many these are.
ZAV_EXPORT XLOPER12* ZavrelCategoryIndices(const XLOPER12* data, const XLOPER12* name) {
  return OfPositions("ZavrelCategoryIndices", data, name, [](Positions positions) -> CellResult {
    if (const auto filled = FillNextCategoryIndices(positions)) return *filled;
    if (positions.empty()) return Failure(ExcelError::kNA);
    return PositionsForCaller(positions);
  });
}

/// The positions into the VARIANT whose address is given; without one their count alone.
ZAV_EXPORT XLOPER12* ZavrelCategoryIndicesPrivate2(const XLOPER12* data, const XLOPER12* name,
                                                   const char* address) {
  return OfPositions("ZavrelCategoryIndicesPrivate2", data, name,
                     [&](Positions positions) { return FillIndicesByAddress(positions, address); });
}

/// The positions into the array that a macro entered under the id.
ZAV_EXPORT XLOPER12* ZavrelCategoryIndicesPrivate(const XLOPER12* data, const XLOPER12* name,
                                                  const char* id) {
  return OfPositions("ZavrelCategoryIndicesPrivate", data, name,
                     [&](Positions positions) { return FillIndicesById(positions, id); });
}

/// TRUE when two names stand for the same category. An empty first name: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelCategoryNameCompare(const XLOPER12* first, const XLOPER12* second) {
  return WorksheetFunction(
      "ZavrelCategoryNameCompare", Reading("SS"), {first, second},
      [](const Parameters& read) -> CellResult {
        const std::u16string name = CleanedCategoryName(read.text(0));
        if (name.empty()) return Failure(ExcelError::kValue);
        return XXloper::Boolean(EqualIgnoringCase(name, CleanedCategoryName(read.text(1))));
      });
}

}  // namespace zavrel
