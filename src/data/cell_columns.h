#pragma once
// Cells of a data set, stored as columns: one byte of tag and eight bytes of payload per cell,
// texts in blocks.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "excel/xloper12.h"
#include "platform/block_pool.h"
#include "stats/running_sum.h"

namespace zavrel {

enum class CellTag : std::uint8_t {
  kNumber,  // 0, so that a run of numbers is a run of zero bytes
  kText,
  kBoolean,
  kError,
  kMissing,  // an omitted argument
  kBlank,
  kInteger,
};
inline constexpr std::size_t kCellTags = 7;

/// The host's value-type code for a tag.
std::uint16_t ValueType(CellTag tag);

/// One cell as its readers see it: the tag and the matching value. A view: the text lives as long
/// as the cells that it came from.
struct SingleValue {
  CellTag tag = CellTag::kMissing;
  double number = 0;      // kNumber
  std::int32_t code = 0;  // kError: the host's error code; kBoolean: 0 or 1; kInteger: the integer
  std::u16string_view text{};  // kText

  std::uint16_t type() const { return ValueType(tag); }
  bool IsNumber() const { return tag == CellTag::kNumber; }
};

/// The cell that a host value stands for. A value that no cell can hold (a reference, a nested
/// array, a flow or unknown type) counts as the error #VALUE!, a text without a pointer as the
/// empty text.
SingleValue SingleValueOf(const XLOPER12& value);

class CellColumns {
 public:
  std::size_t size() const { return tags_.size(); }
  CellTag tag(std::size_t index) const { return tags_.data()[index]; }
  SingleValue operator[](std::size_t index) const;
  std::size_t count(CellTag tag) const { return counts_[static_cast<std::size_t>(tag)]; }
  bool AllNumbers() const { return count(CellTag::kNumber) == size(); }

  std::span<const CellTag> tags() const { return {tags_.data(), tags_.size()}; }
  /// The payloads: for a number its value, for any other cell bits that mean nothing as a double.
  std::span<const double> payloads() const { return {payloads_.data(), payloads_.size()}; }

  /// The running sum of the numbers; null if it is unknown because cells came from other columns.
  const RunningSum* running_sum() const { return knows_sum_ ? &running_sum_ : nullptr; }

  void Reserve(std::size_t cells);
  void Append(std::span<const XLOPER12> cells);
  void AppendBlanks(std::size_t count);
  /// Appends the first `count` cells of other columns.
  void AppendFirst(const CellColumns& cells, std::size_t count) { AppendPart(cells, 0, count); }
  /// Appends `count` cells of other columns from `position` on.
  void AppendPart(const CellColumns& cells, std::size_t position, std::size_t count);

  /// How many of the host's cells, up to the first that differs, equal the stored ones from
  /// `position` on, in type and in value: every bit of a number, every code unit of a text.
  /// Allocates nothing.
  std::size_t CountEqual(std::size_t position, std::span<const XLOPER12> cells) const;
  /// The same for the cells of other columns.
  std::size_t CountEqual(std::size_t position, const CellColumns& cells) const;

  std::size_t bytes() const;

 private:
  std::u16string_view TextAt(std::size_t index) const;
  double StoreText(std::u16string_view text);
  bool EqualCell(std::size_t index, const XLOPER12& cell) const;

  BlockArray<CellTag> tags_;
  BlockArray<double> payloads_;
  std::vector<BlockArray<char16_t>> texts_;  // beyond the first block, nothing stored is moved
  std::array<std::size_t, kCellTags> counts_{};
  RunningSum running_sum_;
  bool knows_sum_ = true;
};

}  // namespace zavrel
