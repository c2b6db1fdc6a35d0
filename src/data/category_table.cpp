#include "data/category_table.h"

#include <algorithm>
#include <bit>
#include <boost/unordered/unordered_flat_map.hpp>
#include <numeric>

#include "data/category_name.h"
#include "data/text_words.h"
#include "platform/letter_case.h"
#include "platform/white_space.h"

namespace zavrel {
namespace {

constexpr std::int32_t kNoCategory = -1;

}  // namespace

std::u16string CleanedCategoryName(std::u16string_view name) {
  std::u16string cleaned(Trimmed(name));
  for (char16_t& unit : cleaned) {
    if (unit == u'\r' || unit == u'\n') unit = u' ';
  }
  return cleaned;
}

std::u16string CategoryKey(std::u16string_view name) {
  return LowerCase(CleanedCategoryName(name));
}

/// Gives each cell the index of its category, then gathers the positions of each category. The
/// category of a text or a number is found once and looked up from then on.
class CategoryTableBuilder {
 public:
  explicit CategoryTableBuilder(const CellColumns& cells) : cells_(cells) {}

  OrFailure<CategoryTable> Build() {
    const std::size_t count = cells_.size();
    if (count > 0) {
      indices_.Reserve(count);
      std::int32_t* index = indices_.Extend(count);
      for (std::size_t i = 0; i < count; ++i) {
        const OrFailure<std::int32_t> found = IndexOf(cells_[i]);
        if (!found.ok()) return found.failure();
        index[i] = *found;
        if (*found != kNoCategory) ++counts_[static_cast<std::size_t>(*found)];
      }
    }
    GatherPositions();
    return std::move(table_);
  }

 private:
  /// A step is a multiplication whose halves are folded together (Wang Yi, wyhash, 2019).
  struct TextHash {
    using is_avalanching = void;

    std::size_t operator()(std::u16string_view text) const {
      std::uint64_t hash = text.size();
      if (text.size() < kWordUnits) {
        for (const char16_t unit : text) hash = hash << 16 | unit;
        return Mixed(hash);
      }
      EachWord(text.size(), [&](std::size_t i) {
        hash = Mixed(hash ^ WordOf(text.data() + i));
        return true;
      });
      return hash;
    }

   private:
    static std::uint64_t Mixed(std::uint64_t word) {
      __extension__ using Product = unsigned __int128;
      const Product product = Product{word ^ 0xA0761D6478BD642F} * 0xE7037ED1A0B428DB;
      return static_cast<std::uint64_t>(product >> 64) ^ static_cast<std::uint64_t>(product);
    }
  };

  struct TextsAreSame {
    bool operator()(std::u16string_view a, std::u16string_view b) const { return SameText(a, b); }
  };

  OrFailure<std::int32_t> IndexOf(const SingleValue& cell) {
    switch (cell.tag) {
      case CellTag::kBlank:
      case CellTag::kMissing:
      case CellTag::kError:
        return kNoCategory;
      case CellTag::kText: {
        const auto [known, is_new] = by_text_.try_emplace(cell.text, kNoCategory);
        if (is_new) known->second = IndexOfName(cell.text);
        return known->second;
      }
      case CellTag::kNumber: {
        const auto [known, is_new] =
            by_number_.try_emplace(std::bit_cast<std::uint64_t>(cell.number), kNoCategory);
        if (is_new) {
          const OrFailure<std::int32_t> index = IndexByHost(cell);
          if (!index.ok()) return index;
          known->second = *index;
        }
        return known->second;
      }
      case CellTag::kBoolean:
      case CellTag::kInteger:
        break;
    }
    return IndexByHost(cell);
  }

  OrFailure<std::int32_t> IndexByHost(const SingleValue& cell) {
    const OrFailure<std::u16string> name = CategoryNameOf(cell);
    if (!name.ok()) return name.failure();
    return IndexOfName(*name);
  }

  std::int32_t IndexOfName(std::u16string_view name) {
    std::u16string cleaned = CleanedCategoryName(name);
    if (cleaned.empty()) return kNoCategory;
    const auto [known, is_new] =
        table_.by_key_.try_emplace(LowerCase(cleaned), table_.categories_.size());
    if (is_new) {
      table_.categories_.push_back({std::move(cleaned)});
      counts_.push_back(0);
    }
    return static_cast<std::int32_t>(known->second);
  }

  void GatherPositions() {
    const std::size_t total = std::accumulate(counts_.begin(), counts_.end(), std::size_t{0});
    if (total == 0) return;
    table_.positions_.Reserve(total);
    std::int32_t* next = table_.positions_.Extend(total);
    std::vector<std::int32_t*> places;
    places.reserve(table_.size());
    for (std::size_t i = 0; i < table_.size(); ++i) {
      table_.categories_[i].positions = {next, counts_[i]};
      places.push_back(next);
      next += counts_[i];
    }
    std::int32_t position = 0;
    for (const std::int32_t index : Indices()) {
      if (index != kNoCategory) *places[static_cast<std::size_t>(index)]++ = position;
      ++position;
    }
  }

  std::span<const std::int32_t> Indices() const { return {indices_.data(), indices_.size()}; }

  const CellColumns& cells_;
  CategoryTable table_;
  std::vector<std::size_t> counts_;  // of the cells of each category
  BlockArray<std::int32_t> indices_;
  boost::unordered_flat_map<std::u16string_view, std::int32_t, TextHash, TextsAreSame> by_text_;
  boost::unordered_flat_map<std::uint64_t, std::int32_t> by_number_;
};

OrFailure<CategoryTable> CategoryTable::Of(const CellColumns& cells) {
  return CategoryTableBuilder(cells).Build();
}

const Category* CategoryTable::Find(std::u16string_view name) const {
  const auto found = by_key_.find(CategoryKey(name));
  return found == by_key_.end() ? nullptr : &categories_[found->second];
}

std::span<const std::u16string_view> CategoryTable::SortedNames() const {
  if (sorted_names_.empty()) {
    sorted_names_.reserve(size());
    for (const Category& category : categories_) sorted_names_.push_back(category.name);
    std::sort(sorted_names_.begin(), sorted_names_.end());
  }
  return sorted_names_;
}

std::size_t CategoryTable::bytes() const {
  std::size_t bytes = positions_.bytes();
  for (const Category& category : categories_)
    bytes += sizeof category + 2 * category.name.capacity() * sizeof(char16_t) + 64;
  return bytes;
}

}  // namespace zavrel
