#pragma once
// Items that a workbook keeps for the add-in, and the texts of cells that hold them.
//
// The items stand in one column of a sheet. Its first cell is the heading: what this is, its
// version, in which rows the items begin and how many rows they take, and a checksum of them:
//   ZavrelData 1 2 13 8c1f0e5ab2d94c70
// The rows hold a sequence of bytes in hexadecimal digits, since no program changes these.

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "numbers/double_matrix.h"
#include "platform/variant_copies.h"

namespace zavrel::services {

using Bytes = std::vector<std::byte>;

/// A text, a number, an array of numbers, or bytes that nobody interprets.
using StoredItem = std::variant<std::u16string, double, DoubleMatrix, Bytes>;

/// By name.
using StoredItems = std::map<std::u16string, StoredItem, std::less<>>;

/// What an item may have: its content in bytes, its name in characters.
inline constexpr std::size_t kMostItemBytes = std::size_t{1} << 20;
inline constexpr std::size_t kMostNameLength = 255;

/// True if an item may have this name and content.
bool CanBeStored(std::u16string_view name, const StoredItem& item);

/// The texts of the rows, none longer than cells take at once.
std::vector<std::u16string> RowsOf(const StoredItems& items);
/// Nothing if the rows are no items: damaged, or of another maker.
std::optional<StoredItems> ItemsIn(std::span<const std::u16string> rows);

/// Where the rows stand; rows count from 1.
struct StorageHeading {
  std::uint32_t first_row = 0;
  std::uint32_t rows = 0;
  std::uint64_t checksum = 0;
  bool operator==(const StorageHeading&) const = default;

  std::u16string Text() const;
};

std::uint64_t ChecksumOf(std::span<const std::u16string> rows);
/// Nothing for any other text, and for another version.
std::optional<StorageHeading> HeadingIn(std::u16string_view text);

}  // namespace zavrel::services
