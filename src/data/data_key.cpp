#include "data/data_key.h"

#include <bit>
#include <charconv>
#include <cstdint>
#include <optional>

#include "data/cell_columns.h"
#include "data/cell_layout.h"

namespace zavrel {
namespace {

/// FNV-1a over 64-bit words.
class Fingerprint {
 public:
  void Add(std::uint64_t word) { hash_ = (hash_ ^ word) * 0x100000001B3ull; }
  void Add(const SingleValue& value) {
    Add(static_cast<std::uint64_t>(value.tag));
    Add(std::bit_cast<std::uint64_t>(value.number));
    Add(static_cast<std::uint32_t>(value.code));
    Add(value.text.size());
    for (const char16_t unit : value.text) Add(unit);
  }
  // The multiplication carries upwards only: fold the high half back.
  std::uint64_t Get() const { return hash_ ^ hash_ >> 32; }

 private:
  std::uint64_t hash_ = 0xCBF29CE484222325ull;
};

class KeyText {
 public:
  explicit KeyText(SheetIds& sheet_ids) : sheet_ids_(sheet_ids) { text_.reserve(64); }

  /// False when the host wants the call to return.
  bool AddPiece(const ArgumentPiece& piece) {
    if (!text_.empty()) text_ += ';';
    if (piece.reference) return AddReference(*piece.record, *piece.reference);
    if (TypeOf(*piece.record) == xltypeMissing) {
      text_ += '-';
    } else {
      AddContent(piece);
    }
    return true;
  }
  std::string Take() && { return std::move(text_); }

 private:
  template <class Number>
  void Add(Number number, int base = 10) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, number, base).ptr;
    text_.append(digits, end);
  }

  bool AddReference(const XLOPER12& record, const ReferenceView& reference) {
    if (!reference.sheet_id() && !calling_sheet_) {
      const auto sheet = sheet_ids_.OfCalling(record);
      if (!sheet.ok()) return false;
      calling_sheet_ = (*sheet).value_or(0);
    }
    text_ += '[';
    Add(reference.sheet_id() ? *reference.sheet_id() : *calling_sheet_, 16);
    text_ += ']';
    const char* separator = "";
    for (const XLREF12& area : reference.areas()) {
      text_ += separator;
      separator = ",";
      text_ += 'R';
      Add(area.rwFirst + 1);
      text_ += 'C';
      Add(area.colFirst + 1);
      text_ += ":R";
      Add(area.rwLast + 1);
      text_ += 'C';
      Add(area.colLast + 1);
    }
    return true;
  }

  void AddContent(const ArgumentPiece& piece) {
    Fingerprint fingerprint;
    for (const XLOPER12& cell : piece.values()) fingerprint.Add(SingleValueOf(cell));
    const CellLayout layout = LayoutOf({&piece, 1});
    text_ += '{';
    Add(layout.rows);
    text_ += 'x';
    Add(layout.columns);
    text_ += '#';
    Add(fingerprint.Get(), 16);
    text_ += '}';
  }

  SheetIds& sheet_ids_;
  std::string text_;
  std::optional<std::uint64_t> calling_sheet_;
};

}  // namespace

std::optional<std::string> DataKey(Pieces pieces, SheetIds& sheet_ids) {
  KeyText key(sheet_ids);
  for (const ArgumentPiece& piece : pieces) {
    if (!key.AddPiece(piece)) return std::nullopt;
  }
  return std::move(key).Take();
}

}  // namespace zavrel
