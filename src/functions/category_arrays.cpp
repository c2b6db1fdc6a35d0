#include "functions/category_arrays.h"

#include <new>
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
XXloper Fill(Items items, std::uint64_t address) {
  try {
    if (WriteMacroArrays(std::array{MacroArray{address, ElementsOf(items)}}))
      return XXloper::Number(static_cast<double>(items.size()));
  } catch (const std::bad_alloc&) {
    WriteMacroArrays(std::array{MacroArray{address, {}}});
  }
  return XXloper::Error(ExcelError::kValue);
}

template <class Items>
std::optional<XXloper> FillNext(Items items, std::uint64_t& slot) {
  const std::uint64_t address = std::exchange(slot, 0);
  if (address == 0) return std::nullopt;
  return Fill(items, address);
}

template <class Items>
XXloper FillByAddress(Items items, const char* text) {
  const auto address = Session::Current()->Kept<MacroHandshakes>().IssuedAddress(text);
  return address ? Fill(items, *address) : XXloper::Error(ExcelError::kValue);
}

template <class Pending, class Items>
XXloper FillById(Items items, const char* id) {
  MacroHandshakes& handshakes = Session::Current()->Kept<MacroHandshakes>();
  const std::string key = id == nullptr ? "" : id;
  const Pending* wanted = handshakes.Find<Pending>(key);
  if (wanted == nullptr) return XXloper::Error(ExcelError::kValue);
  const std::uint64_t address = wanted->address;
  handshakes.Remove(key);
  return Fill(items, address);
}

}  // namespace

std::optional<XXloper> FillNextCategoryNames(CategoryNames names) {
  return FillNext(names, Session::Current()->Kept<MacroHandshakes>().next_category_names());
}
std::optional<XXloper> FillNextCategoryIndices(CategoryPositions positions) {
  return FillNext(positions, Session::Current()->Kept<MacroHandshakes>().next_category_indices());
}

XXloper FillNamesByAddress(CategoryNames names, const char* address) {
  return FillByAddress(names, address);
}
XXloper FillIndicesByAddress(CategoryPositions positions, const char* address) {
  return FillByAddress(positions, address);
}

XXloper FillNamesById(CategoryNames names, const char* id) {
  return FillById<PendingCategoryNames>(names, id);
}
XXloper FillIndicesById(CategoryPositions positions, const char* id) {
  return FillById<PendingCategoryIndices>(positions, id);
}

}  // namespace zavrel
