#include "data/cell_columns.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "data/equal_cells.h"
#include "data/text_words.h"
#include "numbers/floating_point_scope.h"

namespace zavrel {
namespace {

static_assert(sizeof(CellTag) == 1);
constexpr std::size_t kStep = 8;  // cells taken over at once: one word of tags

std::uint64_t Bits(double value) { return std::bit_cast<std::uint64_t>(value); }

double CodePayload(std::int32_t code) {
  return std::bit_cast<double>(static_cast<std::uint64_t>(static_cast<std::uint32_t>(code)));
}
std::int32_t CodeOf(double payload) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(Bits(payload)));
}

// A text's payload: its block, where it begins there, and its length.
constexpr std::size_t kTextBlockUnits = std::size_t{1} << 19;
double TextPayload(std::size_t block, std::size_t begin, std::size_t length) {
  return std::bit_cast<double>(std::uint64_t{block * kTextBlockUnits + begin} << 16 | length);
}
static_assert(kExcelTextLimit < (1u << 16));

/// True when the kStep cells from `cells` on are all numbers.
bool AllNumberCells(const XLOPER12* cells) {
  std::uint32_t difference = 0;
  for (std::size_t k = 0; k < kStep; ++k) difference |= cells[k].xltype ^ xltypeNum;
  return (difference & xltypeMask) == 0;
}

}  // namespace

std::uint16_t ValueType(CellTag tag) {
  static constexpr std::uint16_t kTypes[kCellTags] = {
      xltypeNum, xltypeStr, xltypeBool, xltypeErr, xltypeMissing, xltypeNil, xltypeInt};
  return kTypes[static_cast<std::size_t>(tag)];
}

SingleValue SingleValueOf(const XLOPER12& value) {
  switch (value.xltype & xltypeMask) {
    case xltypeNum:
      return {.tag = CellTag::kNumber, .number = value.val.num};
    case xltypeStr: {
      const XCHAR* text = value.val.str;
      return {
          .tag = CellTag::kText,
          .text = text == nullptr ? std::u16string_view() : std::u16string_view(text + 1, text[0])};
    }
    case xltypeBool:
      return {.tag = CellTag::kBoolean, .code = value.val.xbool != 0 ? 1 : 0};
    case xltypeErr:
      return {.tag = CellTag::kError, .code = value.val.err};
    case xltypeMissing:
      return {.tag = CellTag::kMissing};
    case xltypeNil:
      return {.tag = CellTag::kBlank};
    case xltypeInt:
      return {.tag = CellTag::kInteger, .code = value.val.w};
    default:
      return {.tag = CellTag::kError, .code = xlerrValue};
  }
}

SingleValue CellColumns::operator[](std::size_t index) const {
  SingleValue value{.tag = tag(index)};
  switch (value.tag) {
    case CellTag::kNumber:
      value.number = payloads_.data()[index];
      break;
    case CellTag::kText:
      value.text = TextAt(index);
      break;
    case CellTag::kBoolean:
    case CellTag::kError:
    case CellTag::kInteger:
      value.code = CodeOf(payloads_.data()[index]);
      break;
    case CellTag::kMissing:
    case CellTag::kBlank:
      break;
  }
  return value;
}

std::u16string_view CellColumns::TextAt(std::size_t index) const {
  const std::uint64_t payload = Bits(payloads_.data()[index]);
  const auto length = static_cast<std::size_t>(payload & 0xFFFF);
  if (length == 0) return {};
  const auto place = static_cast<std::size_t>(payload >> 16);
  return {texts_[place / kTextBlockUnits].data() + place % kTextBlockUnits, length};
}

double CellColumns::StoreText(std::u16string_view text) {
  if (text.empty()) return TextPayload(0, 0, 0);
  const bool is_first = texts_.empty();
  if (is_first || texts_.back().size() + text.size() > kTextBlockUnits) {
    texts_.emplace_back();
    if (!is_first) texts_.back().Reserve(kTextBlockUnits);
  }
  BlockArray<char16_t>& block = texts_.back();
  const std::size_t begin = block.size();
  CopyText(text, block.Extend(text.size()));
  return TextPayload(texts_.size() - 1, begin, text.size());
}

std::size_t CellColumns::bytes() const {
  std::size_t bytes = tags_.bytes() + payloads_.bytes();
  for (const BlockArray<char16_t>& block : texts_) bytes += block.bytes();
  return bytes;
}

void CellColumns::Reserve(std::size_t cells) {
  tags_.Reserve(cells);
  payloads_.Reserve(cells);
}

void CellColumns::Append(std::span<const XLOPER12> cells) {
  CellTag* tags = tags_.Extend(cells.size());
  double* payloads = payloads_.Extend(cells.size());
  static_assert(static_cast<int>(CellTag::kNumber) == 0);
  std::size_t others = 0;
  const FloatingPointScope environment;
  RunningSum sum = running_sum_;
  std::size_t i = 0;
  while (i < cells.size()) {
    // Runs of numbers, a word of tags at a time and without a branch per cell.
    for (; i + kStep <= cells.size() && AllNumberCells(cells.data() + i); i += kStep) {
      std::memset(tags + i, 0, kStep);
      for (std::size_t k = i; k < i + kStep; ++k) payloads[k] = cells[k].val.num;
      for (std::size_t k = i; k < i + kStep; ++k) sum.Add(cells[k].val.num);
    }
    for (const std::size_t end = std::min(i + kStep, cells.size()); i < end; ++i) {
      const SingleValue value = SingleValueOf(cells[i]);
      tags[i] = value.tag;
      payloads[i] = value.tag == CellTag::kNumber ? value.number
                    : value.tag == CellTag::kText ? StoreText(value.text)
                                                  : CodePayload(value.code);
      if (value.tag == CellTag::kNumber) {
        sum.Add(value.number);
      } else {
        ++counts_[static_cast<std::size_t>(value.tag)];
        ++others;
      }
    }
  }
  counts_[static_cast<std::size_t>(CellTag::kNumber)] += cells.size() - others;
  running_sum_ = Settled(sum);
}

void CellColumns::AppendBlanks(std::size_t count) {
  std::fill_n(tags_.Extend(count), count, CellTag::kBlank);
  std::fill_n(payloads_.Extend(count), count, 0.0);
  counts_[static_cast<std::size_t>(CellTag::kBlank)] += count;
}

void CellColumns::AppendPart(const CellColumns& cells, std::size_t position, std::size_t count) {
  if (count == 0) return;
  knows_sum_ = false;
  CellTag* tags = tags_.Extend(count);
  double* payloads = payloads_.Extend(count);
  std::memcpy(tags, cells.tags_.data() + position, count * sizeof *tags);
  std::memcpy(payloads, cells.payloads_.data() + position, count * sizeof *payloads);
  for (std::size_t i = 0; i < count; ++i) {
    ++counts_[static_cast<std::size_t>(tags[i])];
    if (tags[i] == CellTag::kText) payloads[i] = StoreText(cells.TextAt(position + i));
  }
}

bool CellColumns::EqualCell(std::size_t index, const XLOPER12& cell) const {
  const SingleValue value = SingleValueOf(cell);
  if (value.tag != tag(index)) return false;
  const double payload = payloads_.data()[index];
  switch (value.tag) {
    case CellTag::kNumber:
      return Bits(value.number) == Bits(payload);
    case CellTag::kText:
      return SameText(value.text, TextAt(index));
    default:
      return value.code == CodeOf(payload);
  }
}

std::size_t CellColumns::CountEqual(std::size_t position, std::span<const XLOPER12> cells) const {
  const std::size_t count = std::min(cells.size(), size() - position);
  const CellTag* tags = tags_.data() + position;
  const double* payloads = payloads_.data() + position;
  std::size_t i = 0;
  while (i < count) {
    i += CountEqualNumbersAndBlanks(cells.data() + i, tags + i, payloads + i, count - i);
    for (const std::size_t end = std::min(i + kStep, count); i < end; ++i) {
      if (!EqualCell(position + i, cells[i])) return i;
    }
  }
  return count;
}

std::size_t CellColumns::CountEqual(std::size_t position, const CellColumns& cells) const {
  const std::size_t count = std::min(cells.size(), size() - position);
  for (std::size_t i = 0; i < count; ++i) {
    if (tag(position + i) != cells.tag(i)) return i;
    const bool equal =
        tag(position + i) == CellTag::kText
            ? SameText(TextAt(position + i), cells.TextAt(i))
            : Bits(payloads_.data()[position + i]) == Bits(cells.payloads_.data()[i]);
    if (!equal) return i;
  }
  return count;
}

}  // namespace zavrel
