// The categories of a data set: ZavCountCategories ... ZavCategoryNameCompare, and the functions
// that write category names and positions into a macro's arrays.
//
// Numbers and booleans are categories by the host's text for them. If the host still has to
// calculate something, a call returns #REF! at once, and the host repeats it.
#include <algorithm>

#include "data/category_table.h"
#include "frame/calling_array.h"
#include "frame/worksheet_function.h"
#include "functions/category_arrays.h"
#include "platform/export.h"
#include "platform/letter_case.h"

namespace zavrel {
namespace {

constexpr Reading kData =
    Reading("R", MissingDataPolicy::kNumbersOnly).WithoutMemory(ExcelError::kValue);
constexpr Reading kDataAndName =
    Reading("RS", MissingDataPolicy::kNumbersOnly).WithoutMemory(ExcelError::kValue);

/// A worksheet function whose result `use` makes from the data's categories.
template <class Use>
XLOPER12* OfCategories(const char* name, const Reading& reading, const XLOPER12* data,
                       Use use) noexcept {
  return WorksheetFunction(name, reading, {data}, [&](const Parameters& read) -> CellResult {
    const OrFailure<const CategoryTable*> categories = read.data(0).Categories();
    if (!categories.ok()) return categories.failure();
    return use(**categories);
  });
}

using Positions = std::span<const std::int32_t>;

Failure NoSuchCategory() { return Failure(ExcelError::kNA); }

/// A worksheet function whose result `use` makes from the positions of the category with a name, or
/// `absent` if no category has it.
template <class Use, class Absent = Failure()>
XLOPER12* OfPositions(const char* name, const Reading& reading, const XLOPER12* data,
                      const XLOPER12* category_name, Use use,
                      const Absent& absent = NoSuchCategory) noexcept {
  return WorksheetFunction(name, reading, {data, category_name},
                           [&](const Parameters& read) -> CellResult {
                             const auto categories = read.data(0).Categories();
                             if (!categories.ok()) return categories.failure();
                             const Category* category = (*categories)->Find(read.text(1));
                             if (category == nullptr) return absent();
                             return use(Positions(category->positions));
                           });
}

/// The names over the calling range. A single cell gets them all in a column, which spills in an
/// Excel that spills results.
CellResult NamesForCaller(CategoryNames names) {
  OrFailure<XXloperArray> array = ArrayOfCaller();
  if (!array.ok()) return array.failure();
  const bool spills = array->size() == 1 && names.size() > 1;
  const auto rows = static_cast<std::int32_t>(std::min<std::size_t>(names.size(), kMostResultRows));
  XXloperArray texts = spills ? XXloperArray(rows, 1) : *std::move(array);
  for (std::size_t i = 0; i < std::min(names.size(), texts.size()); ++i) texts.SetText(i, names[i]);
  return std::move(texts).Finish();
}

CellResult PositionsForCaller(Positions positions) {
  OrFailure<XXloperArray> array = ArrayOfCaller();
  if (!array.ok()) return array.failure();
  for (std::size_t i = 0; i < std::min(positions.size(), array->size()); ++i)
    array->SetNumber(i, positions[i] + 1.0);
  return (*std::move(array)).Finish();
}

}  // namespace

/// The number of categories in the data.
ZAV_EXPORT XLOPER12* ZavrelCountCategories(const XLOPER12* data) {
  return OfCategories("ZavrelCountCategories", kData, data,
                      [](const CategoryTable& categories) { return categories.size(); });
}

/// An array formula: the categories' names (CategoryTable::SortedNames) row by row over the calling
/// range, #N/A in the cells after the last. If the call does not come from cells: #REF!. If a macro
/// has arranged an array for this call, the array gets the names, and the result is their number.
ZAV_EXPORT XLOPER12* ZavrelCategoryNames(const XLOPER12* data) {
  return OfCategories("ZavrelCategoryNames", kData.OnFailure(&ForgetNextCategoryNames), data,
                      [](const CategoryTable& categories) {
                        const auto filled = FillNextCategoryNames(categories.SortedNames());
                        return filled ? *filled : NamesForCaller(categories.SortedNames());
                      });
}

/// Writes the names as strings into the VARIANT at an address and returns their number; without an
/// address it only returns the number.
ZAV_EXPORT XLOPER12* ZavrelCategoryNamesPrivate2(const XLOPER12* data, const char* address) {
  return OfCategories("ZavrelCategoryNamesPrivate2", kData, data,
                      [&](const CategoryTable& categories) {
                        return FillNamesByAddress(categories.SortedNames(), address);
                      });
}

/// Writes the names into the array that a macro entered under the id and returns their number. The
/// entry is used up, whether the call succeeds or fails, unless a cell is not calculated yet.
ZAV_EXPORT XLOPER12* ZavrelCategoryNamesPrivate(const XLOPER12* data, const char* id) {
  return OfCategories(
      "ZavrelCategoryNamesPrivate", kData.OnFailure([&] { ForgetNamesEntry(id); }), data,
      [&](const CategoryTable& categories) { return FillNamesById(categories.SortedNames(), id); });
}

/// The number of cells in the category with this name; 0 if there is none.
ZAV_EXPORT XLOPER12* ZavrelCategoryOccurrenceCount(const XLOPER12* data, const XLOPER12* name) {
  return OfPositions(
      "ZavrelCategoryOccurrenceCount", kDataAndName, data, name,
      [](Positions positions) { return positions.size(); }, [] { return std::size_t{0}; });
}

/// An array formula: the positions of the category's cells in the data, from 1, row by row over the
/// calling range, #N/A in the cells after the last. A name without a category: #N/A. If the call
/// does not come from cells: #REF!. If a macro has arranged an array for this call, the array gets
/// the positions, and the result is their number.
ZAV_EXPORT XLOPER12* ZavrelCategoryIndices(const XLOPER12* data, const XLOPER12* name) {
  return OfPositions("ZavrelCategoryIndices", kDataAndName.OnFailure(&ForgetNextCategoryIndices),
                     data, name, [](Positions positions) {
                       const auto filled = FillNextCategoryIndices(positions);
                       return filled ? *filled : PositionsForCaller(positions);
                     });
}

/// Writes the positions into the VARIANT at an address and returns their number; without an address
/// it only returns the number.
ZAV_EXPORT XLOPER12* ZavrelCategoryIndicesPrivate2(const XLOPER12* data, const XLOPER12* name,
                                                   const char* address) {
  return OfPositions("ZavrelCategoryIndicesPrivate2", kDataAndName, data, name,
                     [&](Positions positions) { return FillIndicesByAddress(positions, address); });
}

/// Writes the positions into the array that a macro entered under the id and returns their number.
/// The entry is used up like that of ZavrelCategoryNamesPrivate.
ZAV_EXPORT XLOPER12* ZavrelCategoryIndicesPrivate(const XLOPER12* data, const XLOPER12* name,
                                                  const char* id) {
  return OfPositions("ZavrelCategoryIndicesPrivate",
                     kDataAndName.OnFailure([&] { ForgetIndicesEntry(id); }), data, name,
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
