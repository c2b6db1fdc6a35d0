// The categories of a data set: ZavCountCategories ... ZavCategoryNameCompare, and the functions
// through which a macro gets their names and positions into arrays of its own.
//
// Numbers and booleans are categories by the host's text for them. Where the host has still to
// calculate something, a call returns #REF! at once and comes again.
#include <algorithm>

#include "data/category_table.h"
#include "data/get_parameters.h"
#include "frame/session.h"
#include "frame/worksheet_function.h"
#include "functions/calling_array.h"
#include "functions/category_arrays.h"
#include "macros/macro_arrays.h"
#include "platform/export.h"
#include "platform/letter_case.h"

namespace zavrel {
namespace {

using Arguments = std::span<const XLOPER12* const>;

XXloper CountOf(std::size_t count) { return XXloper::Number(static_cast<double>(count)); }

/// Reads the data and what else `kinds` asks for, and has `use` make the result of the data's
/// categories. Memory that does not suffice: #VALUE!.
template <class Use>
XXloper OfCategories(std::string_view kinds, Arguments arguments, Use use) {
  try {
    const Parameters parameters = GetParameters(kinds, MissingDataPolicy::kNumbersOnly, arguments);
    if (!parameters.accepted()) return parameters.failure();
    const CategoryTable* categories = parameters.data(0).Categories();
    if (categories == nullptr) return XXloper::Error(ExcelError::kRef);
    return use(*categories, parameters);
  } catch (const std::bad_alloc&) {
    return XXloper::Error(ExcelError::kValue);
  }
}

std::span<const std::int32_t> PositionsOf(const CategoryTable& categories,
                                          const Parameters& parameters) {
  const Category* category = categories.Find(parameters.text(1));
  return category != nullptr ? category->positions : std::span<const std::int32_t>();
}

/// The names over the calling range; a single cell gets them all in a column, which spreads where
/// Excel spreads results.
XXloper NamesForCaller(std::span<const std::u16string_view> names) {
  std::optional<XXloperArray> array = ArrayOfCaller();
  if (!array) return XXloper::Error(ExcelError::kRef);
  if (array->size() == 1 && names.size() > 1) {
    const auto rows = std::min<std::size_t>(names.size(), kMostResultRows);
    array.emplace(static_cast<std::int32_t>(rows), 1);
  }
  for (std::size_t i = 0; i < std::min(names.size(), array->size()); ++i)
    array->SetText(i, names[i]);
  return std::move(*array).Finish();
}

XXloper PositionsForCaller(std::span<const std::int32_t> positions) {
  std::optional<XXloperArray> array = ArrayOfCaller();
  if (!array) return XXloper::Error(ExcelError::kRef);
  for (std::size_t i = 0; i < std::min(positions.size(), array->size()); ++i)
    array->SetNumber(i, positions[i] + 1.0);
  return std::move(*array).Finish();
}

}  // namespace

/// How many categories the data have.
ZAV_EXPORT XLOPER12* ZavrelCountCategories(const XLOPER12* data) {
  return WorksheetFunction("ZavrelCountCategories", [&] {
    return OfCategories("R", std::array{data},
                        [](const CategoryTable& categories, const Parameters&) {
                          return CountOf(categories.size());
                        });
  });
}

/// An array formula: the categories' names (CategoryTable::SortedNames) row by row over the calling
/// range, #N/A where there are no more. Called from elsewhere than cells: #REF!. When a macro has
/// arranged an array for this call, that gets the names, and the result is how many these are.
ZAV_EXPORT XLOPER12* ZavrelCategoryNames(const XLOPER12* data) {
  return WorksheetFunction("ZavrelCategoryNames", [&] {
    return OfCategories("R", std::array{data},
                        [](const CategoryTable& categories, const Parameters&) {
                          const auto filled = FillNextCategoryNames(categories.SortedNames());
                          return filled ? *filled : NamesForCaller(categories.SortedNames());
                        });
  });
}

/// The names as strings into the VARIANT whose address is given; without one their count alone.
ZAV_EXPORT XLOPER12* ZavrelCategoryNamesPrivate2(const XLOPER12* data, const char* address) {
  return WorksheetFunction("ZavrelCategoryNamesPrivate2", [&] {
    return OfCategories("R", std::array{data},
                        [&](const CategoryTable& categories, const Parameters&) {
                          return FillNamesByAddress(categories.SortedNames(), address);
                        });
  });
}

/// The names into the array that a macro entered under the id.
ZAV_EXPORT XLOPER12* ZavrelCategoryNamesPrivate(const XLOPER12* data, const char* id) {
  return WorksheetFunction("ZavrelCategoryNamesPrivate", [&] {
    return OfCategories("R", std::array{data},
                        [&](const CategoryTable& categories, const Parameters&) {
                          return FillNamesById(categories.SortedNames(), id);
                        });
  });
}

/// How many cells belong to the category that the name stands for; 0 when it is none.
ZAV_EXPORT XLOPER12* ZavrelCategoryOccurrenceCount(const XLOPER12* data, const XLOPER12* name) {
  return WorksheetFunction("ZavrelCategoryOccurrenceCount", [&] {
    return OfCategories("RS", std::array{data, name},
                        [](const CategoryTable& categories, const Parameters& parameters) {
                          return CountOf(PositionsOf(categories, parameters).size());
                        });
  });
}

/// An array formula: where the category's cells stand in the data, from 1, row by row over the
/// calling range, #N/A where there are no more. A name that is no category: #N/A. Called from
/// elsewhere than cells: #REF!. When a macro has arranged an array for this call, that gets the
/// positions, and the result is how many these are.
ZAV_EXPORT XLOPER12* ZavrelCategoryIndices(const XLOPER12* data, const XLOPER12* name) {
  return WorksheetFunction("ZavrelCategoryIndices", [&] {
    return OfCategories(
        "RS", std::array{data, name},
        [](const CategoryTable& categories, const Parameters& parameters) -> XXloper {
          const std::span<const std::int32_t> positions = PositionsOf(categories, parameters);
          if (const auto filled = FillNextCategoryIndices(positions)) return *filled;
          return positions.empty() ? XXloper::Error(ExcelError::kNA)
                                   : PositionsForCaller(positions);
        });
  });
}

/// The positions into the VARIANT whose address is given; without one their count alone.
ZAV_EXPORT XLOPER12* ZavrelCategoryIndicesPrivate2(const XLOPER12* data, const XLOPER12* name,
                                                   const char* address) {
  return WorksheetFunction("ZavrelCategoryIndicesPrivate2", [&] {
    return OfCategories("RS", std::array{data, name},
                        [&](const CategoryTable& categories, const Parameters& parameters) {
                          return FillIndicesByAddress(PositionsOf(categories, parameters), address);
                        });
  });
}

/// The positions into the array that a macro entered under the id.
ZAV_EXPORT XLOPER12* ZavrelCategoryIndicesPrivate(const XLOPER12* data, const XLOPER12* name,
                                                  const char* id) {
  return WorksheetFunction("ZavrelCategoryIndicesPrivate", [&] {
    return OfCategories("RS", std::array{data, name},
                        [&](const CategoryTable& categories, const Parameters& parameters) {
                          return FillIndicesById(PositionsOf(categories, parameters), id);
                        });
  });
}

/// TRUE when two names stand for the same category. An empty first name: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelCategoryNameCompare(const XLOPER12* first, const XLOPER12* second) {
  return WorksheetFunction("ZavrelCategoryNameCompare", [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("SS", MissingDataPolicy::kNumbersOnly, std::array{first, second});
    if (!parameters.accepted()) return parameters.failure();
    const std::u16string name = CleanedCategoryName(parameters.text(0));
    if (name.empty()) return XXloper::Error(ExcelError::kValue);
    return XXloper::Boolean(EqualIgnoringCase(name, CleanedCategoryName(parameters.text(1))));
  });
}

}  // namespace zavrel
