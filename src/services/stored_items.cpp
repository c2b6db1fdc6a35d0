#include "services/stored_items.h"

#include <bit>
#include <charconv>
#include <cstring>

#include "platform/utf.h"

namespace zavrel::services {
namespace {

constexpr std::string_view kMark = "ZavrelData 1";
/// In a block of values Excel takes texts of 8,203 characters at most.
constexpr std::size_t kBytesOfRow = 4000;
constexpr std::u16string_view kDigits = u"0123456789abcdef";
constexpr std::uint32_t kMostRows = 1'000'000;  // of a sheet, less the heading

// Numbers are stored as they lie in memory.
static_assert(std::endian::native == std::endian::little);

class Writer {
 public:
  template <class Number>
  void Add(Number number) {
    const auto* first = reinterpret_cast<const std::byte*>(&number);
    bytes_.insert(bytes_.end(), first, first + sizeof number);
  }
  /// Elements, after their number.
  template <class Elements>
  void AddAll(const Elements& elements) {
    const auto view = std::as_bytes(std::span(elements));
    Add(static_cast<std::uint32_t>(elements.size()));
    bytes_.insert(bytes_.end(), view.begin(), view.end());
  }
  const Bytes& bytes() const { return bytes_; }

 private:
  Bytes bytes_;
};

/// Reads what a Writer wrote; `ok()` is false from the first element on that is not there.
class Reader {
 public:
  explicit Reader(std::span<const std::byte> bytes) : bytes_(bytes) {}

  template <class Number>
  Number Next() {
    Number number{};
    if (const auto* from = Take(sizeof number)) std::memcpy(&number, from, sizeof number);
    return number;
  }
  template <class Elements>
  Elements All() {
    using Element = typename Elements::value_type;
    const std::size_t size = Next<std::uint32_t>();
    const auto* from = Take(size * sizeof(Element));
    Elements elements;
    if (from == nullptr || size == 0) return elements;
    elements.resize(size);
    std::memcpy(elements.data(), from, size * sizeof(Element));
    return elements;
  }
  bool ok() const { return ok_; }
  bool at_end() const { return bytes_.empty(); }

 private:
  const std::byte* Take(std::size_t size) {
    ok_ = ok_ && size <= bytes_.size();
    if (!ok_) return nullptr;
    const std::byte* const from = bytes_.data();
    bytes_ = bytes_.subspan(size);
    return from;
  }

  std::span<const std::byte> bytes_;
  bool ok_ = true;
};

struct ItemWriter {
  Writer& out;
  void operator()(const std::u16string& text) const { out.AddAll(text); }
  void operator()(double number) const { out.Add(number); }
  void operator()(const DoubleMatrix& matrix) const {
    out.Add(static_cast<std::uint32_t>(matrix.size()));
    for (const std::vector<double>& row : matrix) out.AddAll(row);
  }
  void operator()(const Bytes& bytes) const { out.AddAll(bytes); }
};

DoubleMatrix ReadMatrix(Reader& in) {
  DoubleMatrix matrix;
  for (auto rows = in.Next<std::uint32_t>(); rows > 0 && in.ok(); --rows)
    matrix.push_back(in.All<std::vector<double>>());
  return matrix;
}

/// Of the kind with this index in StoredItem.
std::optional<StoredItem> ReadItem(Reader& in, std::uint8_t kind) {
  switch (kind) {
    case 0:
      return in.All<std::u16string>();
    case 1:
      return in.Next<double>();
    case 2:
      return ReadMatrix(in);
    case 3:
      return in.All<Bytes>();
    default:
      return std::nullopt;
  }
}

std::optional<StoredItems> ReadItems(std::span<const std::byte> bytes) {
  Reader in(bytes);
  StoredItems items;
  while (!in.at_end()) {
    auto name = in.All<std::u16string>();
    const auto kind = in.Next<std::uint8_t>();
    std::optional<StoredItem> item = ReadItem(in, kind);
    if (!in.ok() || !item || !CanBeStored(name, *item)) return std::nullopt;
    if (!items.emplace(std::move(name), *std::move(item)).second) return std::nullopt;
  }
  return items;
}

std::u16string HexOf(std::span<const std::byte> bytes) {
  std::u16string text;
  text.reserve(2 * bytes.size());
  for (const std::byte byte : bytes) {
    text += kDigits[std::to_integer<std::size_t>(byte >> 4)];
    text += kDigits[std::to_integer<std::size_t>(byte & std::byte{15})];
  }
  return text;
}

bool AppendBytes(std::u16string_view hex, Bytes& bytes) {
  if (hex.size() % 2 != 0) return false;
  for (std::size_t i = 0; i < hex.size(); i += 2) {
    const std::size_t high = kDigits.find(hex[i]), low = kDigits.find(hex[i + 1]);
    if (high == std::u16string_view::npos || low == std::u16string_view::npos) return false;
    bytes.push_back(static_cast<std::byte>(high << 4 | low));
  }
  return true;
}

struct ItemSize {
  std::size_t operator()(const std::u16string& text) const { return text.size() * 2; }
  std::size_t operator()(double) const { return sizeof(double); }
  std::size_t operator()(const DoubleMatrix& matrix) const {
    std::size_t size = 0;
    for (const std::vector<double>& row : matrix) size += row.size() * sizeof(double);
    return size;
  }
  std::size_t operator()(const Bytes& bytes) const { return bytes.size(); }
};

/// The number behind a blank; `text` loses both.
template <class Number>
bool TakeNumber(std::string_view& text, Number& number, int base = 10) {
  if (!text.starts_with(' ')) return false;
  text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return error == std::errc();
}

}  // namespace

bool CanBeStored(std::u16string_view name, const StoredItem& item) {
  return !name.empty() && name.size() <= kMostNameLength &&
         std::visit(ItemSize{}, item) <= kMostItemBytes;
}

std::vector<std::u16string> RowsOf(const StoredItems& items) {
  Writer out;
  for (const auto& [name, item] : items) {
    out.AddAll(name);
    out.Add(static_cast<std::uint8_t>(item.index()));
    std::visit(ItemWriter{out}, item);
  }
  std::vector<std::u16string> rows;
  for (auto rest = std::span(out.bytes()); !rest.empty();) {
    const auto part = rest.first(std::min(rest.size(), kBytesOfRow));
    rows.push_back(HexOf(part));
    rest = rest.subspan(part.size());
  }
  return rows;
}

std::optional<StoredItems> ItemsIn(std::span<const std::u16string> rows) {
  Bytes bytes;
  for (const std::u16string& row : rows) {
    if (!AppendBytes(row, bytes)) return std::nullopt;
  }
  return ReadItems(bytes);
}

std::uint64_t ChecksumOf(std::span<const std::u16string> rows) {
  std::uint64_t hash = 0xCBF29CE484222325;  // FNV-1a, 64 bits
  for (const std::u16string& row : rows) {
    for (const char16_t unit : row) hash = (hash ^ unit) * 0x100000001B3;
  }
  return hash;
}

std::u16string StorageHeading::Text() const {
  char digits[17];
  const auto end = std::to_chars(digits, digits + sizeof digits, checksum, 16).ptr;
  std::string text(kMark);
  for (const std::uint32_t number : {first_row, rows}) text += ' ' + std::to_string(number);
  return Utf16FromUtf8(text + ' ' + std::string(digits, end));
}

std::optional<StorageHeading> HeadingIn(std::u16string_view text) {
  const std::string plain = Utf8FromUtf16(text);
  std::string_view rest = plain;
  if (!rest.starts_with(kMark)) return std::nullopt;
  rest.remove_prefix(kMark.size());
  StorageHeading heading;
  if (!TakeNumber(rest, heading.first_row) || !TakeNumber(rest, heading.rows) ||
      !TakeNumber(rest, heading.checksum, 16) || !rest.empty()) {
    return std::nullopt;
  }
  const bool in_sheet = heading.first_row > 1 && heading.first_row < kMostRows &&
                        heading.rows <= kMostRows - heading.first_row;
  return in_sheet ? std::optional(heading) : std::nullopt;
}

}  // namespace zavrel::services
