#pragma once
// What a macro add-in has arranged for the worksheet calls that follow: into which of its VARIANTs
// they are to write, and how.
//
// A macro names a VARIANT in one of two ways. It asks for the VARIANT's address as a text and
// passes that text to the worksheet function; or it enters its VARIANTs beforehand and passes the
// id of the entry. The texts travel through formulas, where anybody can write any text: an address
// counts only while it is among the latest that were issued, and an id only while its entry is.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "data/latest_map.h"

namespace zavrel {

/// What becomes of a cell in a macro's array: the cell's own value ...
struct ValueElements {};
/// ... its category name, or this name where it has none ...
struct CategoryElements {
  std::u16string blank_name;
};
/// ... its number, or this value where it is none.
struct NumericElements {
  double for_non_numbers = 0;
};
using CellElements = std::variant<ValueElements, CategoryElements, NumericElements>;

/// The VARIANTs that a range's cells of a class are to be written to, by their addresses; 0 where
/// none is wanted.
struct PendingCellValues {
  CellElements elements{};
  std::uint64_t values = 0;
  std::uint64_t indices = 0;  // for the cells' positions in the range, from 1
};

/// The VARIANT that category names or positions are to be written to.
struct PendingCategoryNames {
  std::uint64_t address = 0;
};
struct PendingCategoryIndices {
  std::uint64_t address = 0;
};

/// What can be entered under an id; a kind for each family of functions that fills entries.
using PendingArrays = std::variant<PendingCellValues, PendingCategoryNames, PendingCategoryIndices>;

/// The address in a text: a whole decimal number of 64 bits with its sign, without anything before
/// or behind it. An absent or empty text is 0, "no VARIANT"; nothing for every other text.
std::optional<std::uint64_t> AddressFromText(const char* text);
/// The text of an address.
std::string TextOfAddress(std::uint64_t address);

/// The arrangements of a session. Excel's main thread only.
class MacroHandshakes {
 public:
  /// So many addresses and so many entries are remembered; the oldest go first.
  static constexpr std::size_t kRemembered = 1024;

  /// Issuing an address again makes it the latest.
  void Issue(std::uint64_t address) { issued_.Put(address, {}); }
  bool HasIssued(std::uint64_t address) const { return issued_.Find(address) != nullptr; }
  /// The address in a text, 0 for none; nothing for another text, or when it was not issued.
  std::optional<std::uint64_t> IssuedAddress(const char* text) const;

  /// Enters the arrays and gives their id, which no other entry of the session has had.
  std::string Enter(PendingArrays arrays);
  /// The entry of this kind under the id; null when there is none, or one of another kind. It lives
  /// until the next change.
  template <class Kind>
  const Kind* Find(const std::string& id) const {
    const PendingArrays* entry = entries_.Find(id);
    return entry != nullptr ? std::get_if<Kind>(entry) : nullptr;
  }
  void Remove(const std::string& id) { entries_.Remove(id); }

  /// The arrays of the next call that reads cell values, entered without an id.
  std::optional<PendingCellValues>& next_cell_values() { return next_cell_values_; }
  /// The array of the next call for category names, for category positions; 0 for none.
  std::uint64_t& next_category_names() { return next_category_names_; }
  std::uint64_t& next_category_indices() { return next_category_indices_; }

 private:
  LatestMap<std::uint64_t, std::monostate> issued_{kRemembered};
  LatestMap<std::string, PendingArrays> entries_{kRemembered};
  std::optional<PendingCellValues> next_cell_values_;
  std::uint64_t next_category_names_ = 0;
  std::uint64_t next_category_indices_ = 0;
  std::uint32_t ids_made_ = 0;
};

}  // namespace zavrel
