#include "functions/category_arrays.h"

#include <string>
#include <utility>
#include <vector>

#include "frame/session.h"
#include "macros/macro_arrays.h"
#include "macros/macro_handshakes.h"

namespace zavrel {
namespace {

MacroElements ElementsOf(CategoryNames names) {
  return std::vector<std::u16string>(names.begin(), names.end());
}
MacroElements ElementsOf(CategoryPositions positions) {
  std::vector<std::int32_t> counted(positions.begin(), positions.end());
  for (std::int32_t& position : counted) ++position;
  return counted;
}

template <class Items>
CellResult Fill(Items items, std::uint64_t address) {
  MacroArray array{address, {}};
  if (const auto failure = FillMacroArrays({&array, 1}, [&]() -> std::optional<Failure> {
        array.elements = ElementsOf(items);
        return std::nullopt;
      }))
    return *failure;
  return items.size();
}

template <class Items>
std::optional<CellResult> FillNext(Items items, std::uint64_t& slot) {
  const std::uint64_t address = std::exchange(slot, 0);
  if (address == 0) return std::nullopt;
  return Fill(items, address);
}

template <class Items>
CellResult FillByAddress(Items items, const char* text) {
  auto& handshakes = Session::Current()->Kept<MacroHandshakes>();
  const auto address = handshakes.IssuedAddress(text);
  if (!address) return Failure(ExcelError::kValue);
  CellResult result = Fill(items, *address);
  if (result.is_final()) handshakes.UseUp(*address);
  return result;
}

template <class Pending, class Items>
CellResult FillById(Items items, const char* id) {
  const auto wanted = Session::Current()->Kept<MacroHandshakes>().Take<Pending>(id);
  if (!wanted) return Failure(ExcelError::kValue);
  return Fill(items, wanted->address);
}

}  // namespace

std::optional<CellResult> FillNextCategoryNames(CategoryNames names) {
  return FillNext(names, Session::Current()->Kept<MacroHandshakes>().next_category_names());
}
std::optional<CellResult> FillNextCategoryIndices(CategoryPositions positions) {
  return FillNext(positions, Session::Current()->Kept<MacroHandshakes>().next_category_indices());
}

void ForgetNextCategoryNames() {
  Session::Current()->Kept<MacroHandshakes>().next_category_names() = 0;
}
void ForgetNextCategoryIndices() {
  Session::Current()->Kept<MacroHandshakes>().next_category_indices() = 0;
}

CellResult FillNamesByAddress(CategoryNames names, const char* address) {
  return FillByAddress(names, address);
}
CellResult FillIndicesByAddress(CategoryPositions positions, const char* address) {
  return FillByAddress(positions, address);
}

CellResult FillNamesById(CategoryNames names, const char* id) {
  return FillById<PendingCategoryNames>(names, id);
}
CellResult FillIndicesById(CategoryPositions positions, const char* id) {
  return FillById<PendingCategoryIndices>(positions, id);
}

void ForgetNamesEntry(const char* id) {
  Session::Current()->Kept<MacroHandshakes>().Take<PendingCategoryNames>(id);
}
void ForgetIndicesEntry(const char* id) {
  Session::Current()->Kept<MacroHandshakes>().Take<PendingCategoryIndices>(id);
}

}  // namespace zavrel
