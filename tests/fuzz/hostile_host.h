#pragma once
// A host that answers look-ups and conversions with whatever the bytes say, the same question in
// the same way, and ends the program when it gets back what it did not give.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "excel/excel_call.h"
#include "fuzz/hostile_values.h"

namespace zavrel::tests {

class HostileHost {
 public:
  static constexpr std::size_t kAnswerBytes = 16;
  static constexpr std::size_t kAnswers = 16;

  /// The answers are made of `answers`, kAnswerBytes for each.
  explicit HostileHost(std::vector<std::uint8_t> answers) : answers_(std::move(answers)) {
    answers_.resize(kAnswers * kAnswerBytes);
    current = this;
    SetExcelCallback(&Callback);
  }
  ~HostileHost() {
    SetExcelCallback(nullptr);
    current = nullptr;
    Require(given_.empty(), "a value was not freed");
  }
  HostileHost(const HostileHost&) = delete;
  HostileHost& operator=(const HostileHost&) = delete;

  static void Require(bool holds, const char* otherwise) {
    if (holds) return;
    std::fprintf(stderr, "argument reading: %s\n", otherwise);
    std::abort();
  }

  /// From now on every cell has another value than before.
  void ChangeCells() { ++generation_; }

 private:
  static inline HostileHost* current = nullptr;

  static int Callback(int function, int count, XLOPER12** arguments, XLOPER12* result) {
    switch (function) {
      case xlFree:
        current->Free(*arguments[0]);
        return xlretSuccess;
      case xlCoerce:
        return current->Coerce(*arguments[0], count == 2 ? arguments[1] : nullptr, *result);
      default:
        return xlretSuccess;
    }
  }

  static const void* MemoryOf(const XLOPER12& value) {
    switch (value.xltype & xltypeMask) {
      case xltypeStr:
        return value.val.str;
      case xltypeMulti:
        return value.val.array.lparray;
      case xltypeRef:
        return value.val.mref.lpmref;
      default:
        return nullptr;
    }
  }

  void Free(XLOPER12& value) {
    const void* memory = MemoryOf(value);
    if (memory == nullptr) return;
    Require(given_.erase(memory) == 1, "freed what the host did not give");
    value = {};
  }

  /// The area that a question is about; false when it asks for something else.
  static bool AreaOf(const XLOPER12& source, XLREF12& area) {
    if (source.xltype == xltypeSRef) {
      area = source.val.sref.ref;
    } else if (source.xltype == xltypeRef) {
      area = source.val.mref.lpmref->reftbl[0];
      Require(source.val.mref.lpmref->count == 1, "asked for several areas at once");
    } else {
      return false;
    }
    Require(area.rwFirst >= 0 && area.rwFirst <= area.rwLast && area.rwLast < kExcelRows &&
                area.colFirst >= 0 && area.colFirst <= area.colLast && area.colLast < kExcelColumns,
            "asked for an area off the sheet");
    return true;
  }

  std::span<const std::uint8_t> Answer(const XLREF12& area, std::uint32_t salt) const {
    std::uint32_t hash = generation_ + salt * 31;
    for (const std::int32_t place : {area.rwFirst, area.rwLast, area.colFirst, area.colLast})
      hash = (hash ^ static_cast<std::uint32_t>(place)) * 0x9E3779B1u;
    return std::span(answers_).subspan((hash >> 16) % kAnswers * kAnswerBytes, kAnswerBytes);
  }

  int Coerce(const XLOPER12& source, const XLOPER12* wanted, XLOPER12& result) {
    XLREF12 area{};
    const bool is_area =
        (wanted == nullptr || wanted->val.w == static_cast<int>(xltypeRef)) && AreaOf(source, area);
    Bytes bytes(Answer(area, wanted != nullptr ? static_cast<std::uint32_t>(wanted->val.w) : 0));
    auto memory = std::make_unique<ValueMemory>();
    HostileValues values(bytes, *memory);
    switch (bytes.Below(24)) {
      case 0:
        return xlretUncalced;
      case 1:
        return xlretAbort;
      case 2:
        return xlretFailed;
      case 3:  // success, and nothing said
        return xlretSuccess;
      case 4:
        result = values.Any();
        break;
      case 5:  // another size than asked for
        result = values.ArrayOf(static_cast<std::int32_t>(1 + bytes.Below(40)),
                                static_cast<std::int32_t>(1 + bytes.Below(6)));
        break;
      default:
        result = is_area && wanted == nullptr ? Cells(area, bytes, values) : values.Any();
    }
    if (const void* held = MemoryOf(result)) given_[held] = std::move(memory);
    return xlretSuccess;
  }

  /// All cells of an area, of a large one those of its first rows and columns.
  static XLOPER12 Cells(const XLREF12& area, Bytes& bytes, HostileValues& values) {
    const std::int32_t rows = area.rwLast - area.rwFirst + 1;
    const std::int32_t columns = area.colLast - area.colFirst + 1;
    if (rows == 1 && columns == 1) return values.Any();
    const bool large = std::int64_t{rows} * columns > 2048;
    return values.ArrayOf(
        large ? std::min(rows, static_cast<std::int32_t>(1 + bytes.Below(40))) : rows,
        large ? std::min(columns, static_cast<std::int32_t>(1 + bytes.Below(6))) : columns);
  }

  std::vector<std::uint8_t> answers_;
  std::uint32_t generation_ = 0;
  std::map<const void*, std::unique_ptr<ValueMemory>> given_;
};

}  // namespace zavrel::tests
