#pragma once
// Selections of stacked data: the values of the rows that belong to a category, or to two.
//
// A selection is named by a handle text, which every function takes in the place of a range.
// References in it are kept as references, so the data are read afresh whenever a function uses the
// handle.

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "excel/xxloper.h"

namespace zavrel {

/// A copy of an argument that outlives the call: its areas on their sheet, or its values.
class KeptArgument {
 public:
  /// std::nullopt if the host wants the call to end. Throws std::invalid_argument for an argument
  /// that cannot be kept.
  static std::optional<KeptArgument> Of(const XLOPER12& argument);

  KeptArgument(KeptArgument&&) noexcept = default;

  const XLOPER12& record() const;
  /// Appends a text that only an equal argument has.
  void AddDescription(std::string& text) const;
  bool is_reference() const { return reference_ != nullptr; }
  /// Bytes that it takes, texts not counted.
  std::size_t bytes() const;

 private:
  KeptArgument() = default;

  XXloper value_;
  std::unique_ptr<XLOPER12> reference_;
  std::unique_ptr<std::byte[]> areas_;
};

/// The n-th value belongs to the n-th cell of each category variable.
struct StackedSelection {
  struct Condition {
    KeptArgument categories;
    std::u16string name;
  };
  KeptArgument values;
  Condition first;
  std::optional<Condition> second;

  /// Calls use(argument) for the values, then for each category variable.
  template <class Use>
  void ForEachArgument(Use use) const {
    use(values);
    use(first.categories);
    if (second) use(second->categories);
  }
};

/// The selections of a session, in a table with room for as many as handles can name, five
/// arguments each. A selection's place follows from its arguments. So the same arguments always
/// have the same handle, and a handle that an earlier session left in a saved workbook does not
/// name whatever this session selected first.
class StackedSelections {
 public:
  static constexpr std::size_t kArguments = 5;
  /// Bytes for selections that consist of references, and for those that contain values, of which
  /// every change makes another selection. Beyond that the selections requested longest ago are
  /// dropped, and their handles are stale until they are requested again.
  struct Budget {
    std::size_t references = std::size_t{256} << 20;
    std::size_t values = std::size_t{16} << 20;
  };

  struct Entry {
    StackedSelection selection;
    // The serials of the source data sets at the latest reading, and of the data set made from
    // them.
    std::array<std::uint64_t, 3> sources{};
    std::uint64_t selected = 0;
  };

  StackedSelections() : StackedSelections(Budget{}) {}
  explicit StackedSelections(Budget budget) : budget_(budget) {}

  /// The index of the selection's first argument, a multiple of 5.
  std::size_t IndexOf(StackedSelection selection);
  /// Null when no selection has this index.
  std::shared_ptr<Entry> Find(std::size_t index) const;

  std::size_t size() const { return by_index_.size(); }

 private:
  struct Kept {
    std::size_t index;
    std::string description;
    std::size_t bytes;
    std::shared_ptr<Entry> entry;
  };
  /// Latest requested first.
  struct Shelf {
    std::list<Kept> kept;
    std::size_t bytes = 0;
  };

  std::size_t IndexFor(const std::string& description) const;
  void Add(Kept kept, Shelf& shelf, std::size_t most_bytes);

  Budget budget_;
  Shelf of_references_;
  Shelf with_values_;
  std::unordered_map<std::size_t, std::list<Kept>::iterator> by_index_;
};

/// The characters 1 and 2, then the index in nine digits.
std::string StackedHandle(std::size_t index);
/// The index in a text that has the form of a handle, issued or not; std::nullopt for any other
/// text.
std::optional<std::size_t> StackedHandleIndex(std::u16string_view text);

}  // namespace zavrel
