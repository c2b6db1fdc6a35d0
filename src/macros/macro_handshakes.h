#pragma once
// A macro add-in's arrangements for the worksheet calls that follow: into which of its VARIANTs
// they write, and how.
//
// A macro names a VARIANT in one of two ways. It gets the VARIANT's address as a text and passes
// that text to the worksheet function, or it enters its VARIANTs beforehand and passes the id of
// the entry. The texts pass through formulas, where a user can write any text. So an address is
// accepted once for each time it was issued, and only while it is among the latest: behind an old
// one there may be no VARIANT any more. An id is accepted while its entry is among the latest.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "data/latest_map.h"

namespace zavrel {

/// The form of a cell in a macro's array: the cell's own value ...
struct ValueElements {};
/// ... its category name, or this name if it has none ...
struct CategoryElements {
  std::u16string blank_name;
};
/// ... its number, or this value if it does not hold one.
struct NumericElements {
  double for_non_numbers = 0;
};
using CellElements = std::variant<ValueElements, CategoryElements, NumericElements>;

/// The addresses of the VARIANTs for the cells of a class; 0 if one is not wanted.
struct PendingCellValues {
  CellElements elements{};
  std::uint64_t values = 0;
  std::uint64_t indices = 0;  // for the cells' positions in the range, from 1
};

/// The address of the VARIANT for category names or positions.
struct PendingCategoryNames {
  std::uint64_t address = 0;
};
struct PendingCategoryIndices {
  std::uint64_t address = 0;
};

/// What can be entered under an id; each family of functions that fills entries has a kind.
using PendingArrays = std::variant<PendingCellValues, PendingCategoryNames, PendingCategoryIndices>;

/// The address in a text: a signed decimal integer of 64 bits, with nothing before or after it. An
/// absent or empty text is 0, "no VARIANT"; std::nullopt for any other text.
std::optional<std::uint64_t> AddressFromText(const char* text);
/// The text of an address.
std::string TextOfAddress(std::uint64_t address);

/// The arrangements of a session. Excel's main thread only.
class MacroHandshakes {
 public:
  /// The most addresses, and the most entries, that are remembered; the oldest are dropped first.
  static constexpr std::size_t kRemembered = 1024;

  /// Issuing an address again makes it the latest, and good for one call more.
  void Issue(std::uint64_t address) {
    const std::size_t* const calls = issued_.Find(address);
    issued_.Put(address, calls == nullptr ? 1 : *calls + 1);
  }
  bool HasIssued(std::uint64_t address) const { return issued_.Find(address) != nullptr; }
  /// The address in a text, 0 for none; std::nullopt if the text is not an address or the address
  /// was not issued.
  std::optional<std::uint64_t> IssuedAddress(const char* text) const;
  /// The call for which an address was issued is over, well or badly; 0 for none.
  void UseUp(std::uint64_t address) {
    const std::size_t* const calls = issued_.Find(address);
    if (calls == nullptr) return;
    if (*calls == 1) {
      issued_.Remove(address);
    } else {
      issued_.Put(address, *calls - 1);
    }
  }

  /// Enters the arrays and returns their id, which is unique in the session.
  std::string Enter(PendingArrays arrays);
  /// The entry of this kind under the id; null if there is none or it is of another kind. The entry
  /// lives until the next change.
  template <class Kind>
  const Kind* Find(const std::string& id) const {
    const PendingArrays* entry = entries_.Find(id);
    return entry != nullptr ? std::get_if<Kind>(entry) : nullptr;
  }
  /// Removes that entry and returns it; a null id is empty.
  template <class Kind>
  std::optional<Kind> Take(const char* id) {
    const std::string key = id == nullptr ? "" : id;
    const Kind* entry = Find<Kind>(key);
    if (entry == nullptr) return std::nullopt;
    Kind taken = *entry;
    entries_.Remove(key);
    return taken;
  }

  /// The arrays for the next call that reads cell values, arranged without an id.
  std::optional<PendingCellValues>& next_cell_values() { return next_cell_values_; }
  /// The array for the next call for category names, or for category positions; 0 for none.
  std::uint64_t& next_category_names() { return next_category_names_; }
  std::uint64_t& next_category_indices() { return next_category_indices_; }

 private:
  LatestMap<std::uint64_t, std::size_t> issued_{kRemembered};  // the calls that each is good for
  LatestMap<std::string, PendingArrays> entries_{kRemembered};
  std::optional<PendingCellValues> next_cell_values_;
  std::uint64_t next_category_names_ = 0;
  std::uint64_t next_category_indices_ = 0;
  std::uint32_t ids_made_ = 0;
};

}  // namespace zavrel
