#pragma once
// Selections of stacked data: the values of the rows that belong to a category, or to two.
//
// A selection is named by a handle text, which every function takes in the place of a range. It is
// kept as it was asked for: references stay references, so that the data are read afresh whenever a
// function uses the handle.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "excel/xxloper.h"

namespace zavrel {

class ExcelData;

/// An argument that outlives its call: its areas on their sheet, or its values.
class KeptArgument {
 public:
  /// Nothing when the host wants the call to end; an argument that cannot be kept throws
  /// std::invalid_argument.
  static std::optional<KeptArgument> Of(const XLOPER12& argument);

  KeptArgument(KeptArgument&&) noexcept = default;
  KeptArgument& operator=(KeptArgument&&) noexcept = default;

  const XLOPER12& record() const;
  /// Adds to a text from which nothing but an equal argument's comes.
  void AddDescription(std::string& text) const;
  bool is_array() const { return value_.Is(xltypeMulti); }

 private:
  KeptArgument() = default;

  XXloper value_;
  std::unique_ptr<XLOPER12> reference_;
  std::unique_ptr<std::byte[]> areas_;
};

/// Of the values the n-th goes with the n-th cell of each category variable.
struct StackedSelection {
  struct Condition {
    KeptArgument categories;
    std::u16string name;
  };
  KeptArgument values;
  Condition first;
  std::optional<Condition> second;

  bool HasArray() const {
    return values.is_array() || first.categories.is_array() ||
           (second && second->categories.is_array());
  }
};

/// The selections of a session, found by the index of their first argument: each has five, so that
/// the first selection has index 0, the next one 5.
class StackedSelections {
 public:
  static constexpr std::size_t kArguments = 5;
  /// So many selections with an array among their arguments are remembered: each change of such
  /// data makes another one. The oldest go first, and their handles are stale then.
  static constexpr std::size_t kMostWithArrays = 1024;

  struct Entry {
    StackedSelection selection;
    // What the latest reading made of which data: served again while these are the same.
    std::weak_ptr<ExcelData> sources[3]{};
    std::weak_ptr<ExcelData> selected{};
  };

  /// The selection's index: the same arguments have the same one, however often they are asked for.
  /// Nothing when there are more selections than handles can name.
  std::optional<std::size_t> IndexOf(StackedSelection selection);
  /// Null when no selection has this index, or has it no longer.
  Entry* Find(std::size_t index) const;

 private:
  static constexpr std::size_t kLastIndex = 999'999'999;

  using Descriptions = std::unordered_map<std::string, std::size_t>;

  std::optional<std::size_t> Add(const std::string& description, StackedSelection selection);

  std::vector<std::unique_ptr<Entry>> entries_;  // null for one that went
  Descriptions by_description_;
  std::deque<std::string> with_arrays_;  // oldest first
};

/// The characters 1 and 2, then the index in nine digits.
std::string StackedHandle(std::size_t index);
/// The index in a text that has the form of a handle, whether it was issued or not.
std::optional<std::size_t> StackedHandleIndex(std::u16string_view text);

}  // namespace zavrel
