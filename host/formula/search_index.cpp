#include "host/formula/search_index.h"

#include <algorithm>
#include <memory>
#include <numeric>

#include "host/formula/coercion.h"

namespace zavhost {
namespace {

constexpr std::size_t kMostArrays = 16;
constexpr std::size_t kFewestElements = 64;
constexpr int kSearchesBefore = 2;

/// An array that was searched before.
struct Searched {
  std::weak_ptr<const Array> array;
  int searches = 0;
  std::optional<SearchIndex> index{};
};

/// The last used one last.
std::vector<Searched>& SearchedArrays() {
  thread_local std::vector<Searched> searched;
  return searched;
}

}  // namespace

const SearchIndex* SearchIndex::Of(const ArrayPtr& array) {
  if (array->values.size() < kFewestElements) return nullptr;
  std::vector<Searched>& all = SearchedArrays();
  std::erase_if(all, [](const Searched& searched) { return searched.array.expired(); });
  const auto found = std::find_if(all.begin(), all.end(), [&array](const Searched& searched) {
    return !searched.array.owner_before(array) && !array.owner_before(searched.array);
  });
  if (found == all.end()) {
    if (all.size() == kMostArrays) all.erase(all.begin());
    all.push_back({array, 1});
    return nullptr;
  }
  std::rotate(found, found + 1, all.end());
  Searched& searched = all.back();
  if (!searched.index && ++searched.searches > kSearchesBefore) searched.index.emplace(array);
  return searched.index ? &*searched.index : nullptr;
}

SearchIndex::SearchIndex(const ArrayPtr& array)
    : array_(array.get()), positions_(array->values.size()) {
  std::iota(positions_.begin(), positions_.end(), 0);
  std::stable_sort(positions_.begin(), positions_.end(),
                   [this](std::int32_t left, std::int32_t right) {
                     const std::vector<Value>& values = array_->values;
                     return CompareValues(values[static_cast<std::size_t>(left)],
                                          values[static_cast<std::size_t>(right)]) < 0;
                   });
}

std::optional<std::int32_t> SearchIndex::Find(const Value& wanted, bool from_last) const {
  const auto order = [this, &wanted](std::int32_t position) {
    return CompareValues(array_->values[static_cast<std::size_t>(position)], wanted);
  };
  const auto first =
      std::partition_point(positions_.begin(), positions_.end(),
                           [&order](std::int32_t position) { return order(position) < 0; });
  if (first == positions_.end() || order(*first) != 0) return std::nullopt;
  if (!from_last) return *first;
  return *(std::partition_point(first, positions_.end(),
                                [&order](std::int32_t position) { return order(position) == 0; }) -
           1);
}

}  // namespace zavhost
