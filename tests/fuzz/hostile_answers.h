#pragma once
// What a host answers to look-ups and conversions when it answers whatever the bytes say: the same
// question in the same way.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "excel/reference.h"
#include "fuzz/hostile_values.h"
#include "support/fake_excel.h"

namespace zavrel::tests {

/// Plugged into a fake host as its answer to xlCoerce.
class HostileAnswers {
 public:
  static constexpr std::size_t kAnswerBytes = 16;
  static constexpr std::size_t kAnswers = 16;

  /// The answers are made of `answers`, kAnswerBytes for each.
  HostileAnswers(FakeExcel& excel, std::vector<std::uint8_t> answers)
      : excel_(excel), answers_(std::move(answers)) {
    answers_.resize(kAnswers * kAnswerBytes);
    excel.On(xlCoerce, [this](FakeExcel::Arguments arguments, XLOPER12& result) {
      return Coerce(*arguments[0], arguments.size() == 2 ? arguments[1] : nullptr, result);
    });
    excel.On(xlfCounta, [this](FakeExcel::Arguments arguments, XLOPER12& result) {
      return CountUsed(*arguments[0], result);
    });
  }

  /// From now on every cell has another value than before. Other questions are answered as before:
  /// which of them are asked depends on what the session remembers of the host.
  void ChangeCells() { ++generation_; }

 private:
  static void Require(bool holds, const char* otherwise) {
    if (!holds) ReportFault(otherwise);
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
    Require(IsOnSheet(area), "asked for an area off the sheet");
    return true;
  }

  /// `types` that the answer shall have; 0 for that of the cells.
  std::span<const std::uint8_t> Answer(const XLREF12& area, std::uint32_t types) const {
    std::uint32_t hash = types == 0 ? generation_ : types * 31;
    for (const std::int32_t place : {area.rwFirst, area.rwLast, area.colFirst, area.colLast})
      hash = (hash ^ static_cast<std::uint32_t>(place)) * 0x9E3779B1u;
    return std::span(answers_).subspan((hash >> 16) % kAnswers * kAnswerBytes, kAnswerBytes);
  }

  int Coerce(const XLOPER12& source, const XLOPER12* wanted, XLOPER12& result) {
    XLREF12 area{};
    const bool is_area =
        (wanted == nullptr || wanted->val.w == static_cast<int>(xltypeRef)) && AreaOf(source, area);
    // Which area is asked for its sheet depends on what the session remembers, too.
    Bytes bytes(wanted == nullptr ? Answer(area, 0)
                                  : Answer({}, static_cast<std::uint32_t>(wanted->val.w)));
    auto memory = std::make_shared<ValueMemory>();
    HostileValues values(bytes, *memory);
    static constexpr int kCodes[] = {xlretUncalced, xlretAbort, xlretFailed, xlretSuccess};
    const std::size_t choice = bytes.Below(24);
    if (choice < std::size(kCodes)) return kCodes[choice];  // nothing is said, even with success
    if (choice == 5) {                                      // another size than asked for
      const auto rows = static_cast<std::int32_t>(1 + bytes.Below(40));
      result = values.ArrayOf(rows, static_cast<std::int32_t>(1 + bytes.Below(6)));
    } else if (choice > 5 && is_area && wanted == nullptr) {
      result = Cells(area, bytes, values);
    } else {
      result = values.Any();
    }
    excel_.Give(result, std::move(memory));
    return xlretSuccess;
  }

  /// Few rows and columns are in use, or few seem to be.
  int CountUsed(const XLOPER12& source, XLOPER12& result) const {
    XLREF12 area{};
    Require(AreaOf(source, area), "asked for the used cells of what is no area");
    Bytes bytes(Answer(area, 0));
    static constexpr int kCodes[] = {xlretUncalced, xlretAbort, xlretFailed};
    const std::size_t choice = bytes.Below(48);
    if (choice < std::size(kCodes)) return kCodes[choice];
    result.xltype = choice == 3 ? xltypeNil : xltypeNum;
    const bool may_be_used = area.rwFirst < 40 && area.colFirst < 6;
    result.val.num = may_be_used ? static_cast<double>(bytes.Below(3)) : 0;
    return xlretSuccess;
  }

  /// All cells of an area, of a large one those of its first rows and columns.
  static XLOPER12 Cells(const XLREF12& area, Bytes& bytes, HostileValues& values) {
    const std::int32_t rows = RowsOf(area);
    const std::int32_t columns = ColumnsOf(area);
    if (rows == 1 && columns == 1) return values.Any();
    if (std::int64_t{rows} * columns <= 2048) return values.ArrayOf(rows, columns);
    const auto given = std::min(rows, static_cast<std::int32_t>(1 + bytes.Below(40)));
    return values.ArrayOf(given, std::min(columns, static_cast<std::int32_t>(1 + bytes.Below(6))));
  }

  FakeExcel& excel_;
  std::vector<std::uint8_t> answers_;
  std::uint32_t generation_ = 0;
};

}  // namespace zavrel::tests
