#pragma once
// Excel values made of arbitrary bytes, as hostile as the C API lets them be: every pointer is null
// or stands on memory of exactly the size that the value claims. What lies beyond that, or in a
// value that claims nothing readable, a sanitizer guards.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "excel/xloper12.h"
#include "fuzz/bytes.h"

namespace zavrel::tests {

/// Memory of values, one heap block for each request.
class ValueMemory {
 public:
  template <class T>
  T* Get(std::size_t bytes) {
    blocks_.push_back(std::make_unique<unsigned char[]>(bytes));
    return reinterpret_cast<T*>(blocks_.back().get());
  }

 private:
  std::vector<std::unique_ptr<unsigned char[]>> blocks_;
};

class HostileValues {
 public:
  HostileValues(Bytes& bytes, ValueMemory& memory) : bytes_(bytes), memory_(memory) {}

  /// Any value; arrays in it are nested no deeper than this.
  XLOPER12 Any(int depth = 2) {
    static constexpr std::uint32_t kTypes[] = {
        xltypeNum,  xltypeStr,   xltypeBool,    xltypeRef,  xltypeErr,
        xltypeFlow, xltypeMulti, xltypeMissing, xltypeNil,  xltypeSRef,
        xltypeInt,  xltypeNum,   xltypeMulti,   xltypeSRef, xltypeBigData,
        0,          0x0FFF,      0x0042,        0x0200,     xltypeNum | xltypeNil};
    XLOPER12 value = Plain();
    value.xltype = kTypes[bytes_.Below(std::size(kTypes))];
    if (value.xltype == xltypeStr) value.val.str = Text();
    if (value.xltype == xltypeMulti && depth > 0) MakeArray(value, depth);
    if (value.xltype == xltypeMulti && depth == 0) value.xltype = xltypeNil;
    if (value.xltype == xltypeSRef) value.val.sref = {1, Area()};
    if (value.xltype == xltypeRef) MakeReference(value);
    value.xltype |= static_cast<std::uint32_t>(bytes_.Below(16)) << 12;
    return value;
  }

  /// An array of this size, which is no larger than a worksheet.
  XLOPER12 ArrayOf(std::int32_t rows, std::int32_t columns) {
    XLOPER12 value{};
    value.xltype = xltypeMulti;
    const std::size_t size = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
    auto* cells = memory_.Get<XLOPER12>(size * sizeof(XLOPER12));
    // A few cells of their own, the others like one or another of these.
    for (std::size_t i = 0; i < size; ++i)
      cells[i] = bytes_.empty() && i >= 8 ? cells[i % 8] : Any(bytes_.Below(16) == 0 ? 1 : 0);
    value.val.array = {cells, rows, columns};
    return value;
  }

 private:
  /// Arbitrary content without a pointer that anyone may follow.
  XLOPER12 Plain() {
    XLOPER12 value{};
    static constexpr double kNumbers[] = {0, -0.0, 1, 2.5, 1e300, 1.01e300, 5e-324, -1e9};
    const std::size_t choice = bytes_.Below(16);
    value.val.num = choice < std::size(kNumbers) ? kNumbers[choice] : bytes_.Take<double>();
    return value;
  }

  XCHAR* Text() {
    static constexpr std::size_t kLengths[] = {0, 1, 2, 7, 40, 255, 32767, 65535};
    const std::size_t choice = bytes_.Below(std::size(kLengths) + 1);
    if (choice == std::size(kLengths)) return nullptr;
    auto* text = memory_.Get<XCHAR>((kLengths[choice] + 1) * sizeof(XCHAR));
    text[0] = static_cast<XCHAR>(kLengths[choice]);
    const auto unit = bytes_.Take<XCHAR>();
    for (std::size_t i = 1; i <= kLengths[choice]; ++i)
      text[i] = i < 4 ? bytes_.Take<XCHAR>() : unit;
    return text;
  }

  void MakeArray(XLOPER12& value, int depth) {
    const auto rows = static_cast<std::int32_t>(bytes_.Below(6));
    const auto columns = static_cast<std::int32_t>(bytes_.Below(6));
    switch (bytes_.Below(4)) {
      case 0: {  // a size that no array has, over one cell
        static constexpr std::int32_t kSizes[] = {0, -1, INT32_MIN, INT32_MAX, kExcelRows + 1};
        auto* cell = memory_.Get<XLOPER12>(sizeof(XLOPER12));
        *cell = Any(depth - 1);
        value.val.array = {cell, kSizes[rows % 5], columns};
        if (bytes_.Below(2) == 0) value.val.array = {cell, 1, columns % 2 == 0 ? 0 : 16385};
        break;
      }
      case 1:  // a good size over nothing
        value.val.array = {nullptr, rows * 1000 + 1, columns + 1};
        break;
      default: {
        const std::size_t size =
            static_cast<std::size_t>(rows + 1) * static_cast<std::size_t>(columns + 1);
        auto* cells = memory_.Get<XLOPER12>(size * sizeof(XLOPER12));
        for (std::size_t i = 0; i < size; ++i) cells[i] = Any(depth - 1);
        value.val.array = {cells, rows + 1, columns + 1};
      }
    }
  }

  XLREF12 Area() {
    const auto row = static_cast<std::int32_t>(bytes_.Below(50));
    const auto column = static_cast<std::int32_t>(bytes_.Below(10));
    const auto rows = static_cast<std::int32_t>(bytes_.Below(30));
    const auto columns = static_cast<std::int32_t>(bytes_.Below(4));
    switch (bytes_.Below(10)) {
      case 0:
        return {0, kExcelRows - 1, column, column + columns / 2};
      case 1:
        return {row, row + rows, 0, kExcelColumns - 1};
      case 2:
        return {0, kExcelRows - 1, 0, kExcelColumns - 1};
      case 3:
        return {kExcelRows - 1 - rows, kExcelRows - 1, kExcelColumns - 1, kExcelColumns - 1};
      case 4: {  // somewhere, likely on no sheet
        const auto first = bytes_.Take<XLREF12>();
        return {first.rwFirst, first.rwFirst, first.colFirst, first.colLast};
      }
      case 5:  // ends out of order
        return {row + 1, row - rows, column, column};
      default:
        return {row, row + rows, column, column + columns};
    }
  }

  void MakeReference(XLOPER12& value) {
    value.val.mref.idSheet = bytes_.Below(3);
    const std::size_t count = bytes_.Below(6);
    value.val.mref.lpmref = nullptr;
    if (count == 5) return;
    const std::size_t head = offsetof(XLMREF12, reftbl);
    auto* areas = memory_.Get<unsigned char>(head + count * sizeof(XLREF12));
    const auto counted = static_cast<std::uint16_t>(count);
    std::memcpy(areas, &counted, sizeof counted);
    for (std::size_t i = 0; i < count; ++i) {
      const XLREF12 area = Area();
      std::memcpy(areas + head + i * sizeof area, &area, sizeof area);
    }
    value.val.mref.lpmref = reinterpret_cast<XLMREF12*>(areas);
  }

  Bytes& bytes_;
  ValueMemory& memory_;
};

}  // namespace zavrel::tests
