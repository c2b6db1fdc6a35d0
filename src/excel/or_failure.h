#pragma once
// A value, or the failure that a worksheet function shows in its place.

#include <cstdint>
#include <utility>
#include <variant>

#include "excel/xxloper.h"
#include "platform/variant_copies.h"

namespace zavrel {

/// Why there is no value: the error that the cell shows, and whether the value is only not
/// calculated yet.
class Failure {
 public:
  explicit Failure(ExcelError error) noexcept : value_(XXloper::Error(error)) {}
  /// An error value that the call met.
  explicit Failure(XXloper error_value) noexcept : value_(std::move(error_value)) {}
  static Failure ByCode(std::int32_t code) { return Failure(XXloper::ErrorByCode(code)); }
  /// The host still has to calculate a cell, or wants the call to end. The function must return at
  /// once and may call only xlFree; it shows #REF! until the host calls it again.
  static Failure Uncalculated() noexcept {
    Failure failure(ExcelError::kRef);
    failure.uncalculated_ = true;
    return failure;
  }

  const XXloper& value() const { return value_; }
  bool uncalculated() const { return uncalculated_; }

 private:
  XXloper value_;
  bool uncalculated_ = false;
};

/// A T, or the failure to get one. Reading the one that is absent is a programming error and throws
/// std::bad_variant_access.
template <class T>
class [[nodiscard]] OrFailure {
 public:
  // Implicit, so that a function can return either directly.
  OrFailure(T value) : content_(std::move(value)) {}  // NOLINT(google-explicit-constructor)
  OrFailure(Failure failure)                          // NOLINT(google-explicit-constructor)
      : content_(std::move(failure)) {}

  bool ok() const { return content_.index() == 0; }
  const Failure& failure() const { return std::get<1>(content_); }

  T& operator*() & { return std::get<0>(content_); }
  const T& operator*() const& { return std::get<0>(content_); }
  T&& operator*() && { return std::get<0>(std::move(content_)); }
  T* operator->() { return &std::get<0>(content_); }
  const T* operator->() const { return &std::get<0>(content_); }

 private:
  std::variant<T, Failure> content_;
};

}  // namespace zavrel
