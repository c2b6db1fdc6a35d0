#pragma once

#include <optional>
#include <string_view>

#include "data/get_parameters.h"
#include "platform/function_ref.h"

namespace zavrel {

/// How a worksheet function reads its arguments, and what its cell shows if that fails.
///
///   Reading("RD", MissingDataPolicy::kPositional).Paired()
class Reading {
 public:
  /// Reads single values only; data/scalar_argument.h lists the kind letters.
  constexpr explicit Reading(std::string_view kinds) : kinds_(kinds) {}
  /// Reads data as well, under this policy.
  constexpr Reading(std::string_view kinds, MissingDataPolicy policy)
      : kinds_(kinds), policy_(policy) {}

  /// The data must have equal lengths.
  constexpr Reading EqualLengths() const { return With(Lengths::kEqual); }
  /// The data are read as pairs, row by row.
  constexpr Reading Paired() const { return With(Lengths::kPaired); }
  /// If the condition is false, the call fails with this error and reads nothing.
  constexpr Reading OnlyIf(bool condition, ExcelError otherwise = ExcelError::kValue) const {
    Reading reading = *this;
    if (!condition) reading.refusal_ = otherwise;
    return reading;
  }
  /// Whatever goes wrong, the cell shows the empty text instead of an error.
  constexpr Reading ShowingEmptyText() const {
    Reading reading = *this;
    reading.shows_empty_text_ = true;
    return reading;
  }
  /// The error shown when memory runs out; #N/A by default.
  constexpr Reading WithoutMemory(ExcelError error) const {
    Reading reading = *this;
    reading.without_memory_ = error;
    return reading;
  }
  /// Calls `failed` when the reading or the body fails, unless a cell is not calculated yet: then
  /// the host calls again. The caller keeps `failed` alive during the call.
  Reading OnFailure(FunctionRef<void()> failed) const {
    Reading reading = *this;
    reading.failed_ = failed;
    return reading;
  }

  OrFailure<Parameters> Read(Arguments arguments) const {
    if (refusal_) return Failure(*refusal_);
    return GetParameters(kinds_, policy_, arguments, {.lengths = lengths_});
  }
  void Failed() const {
    if (failed_) (*failed_)();
  }
  bool shows_empty_text() const { return shows_empty_text_; }
  ExcelError without_memory() const { return without_memory_; }

 private:
  constexpr Reading With(Lengths lengths) const {
    Reading reading = *this;
    reading.lengths_ = lengths;
    return reading;
  }

  std::string_view kinds_;
  MissingDataPolicy policy_ = MissingDataPolicy::kNumbersOnly;
  Lengths lengths_ = Lengths::kAny;
  std::optional<ExcelError> refusal_;
  std::optional<FunctionRef<void()>> failed_;
  bool shows_empty_text_ = false;
  ExcelError without_memory_ = ExcelError::kNA;
};

}  // namespace zavrel
