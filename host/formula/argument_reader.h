#pragma once
// The arguments of a built-in function as the values that it computes with.

#include <cstddef>
#include <optional>
#include <string>

#include "host/formula/builtin_functions.h"
#include "host/formula/coercion.h"

namespace zavhost {

/// Reads the arguments in the order of the calls. The first one that cannot be converted is the
/// failure; what is read after it is empty. A function reads its arguments, returns the failure if
/// there is one, and then computes.
///
/// An argument that is left empty between separators is 0, FALSE or "", as in Excel; a default
/// value stands only for one that is not there at all.
class ArgumentReader {
 public:
  explicit ArgumentReader(const BuiltInCall& call) : call_(call) {}

  std::size_t count() const { return call_.arguments.size(); }
  /// True if the call has such an argument, be it left empty.
  bool IsGiven(std::size_t index) const { return index < count(); }
  /// True if it is absent or left empty.
  bool IsOmitted(std::size_t index) const {
    return !IsGiven(index) || std::holds_alternative<MissingArgument>(call_.arguments[index]);
  }

  /// A single value, an error included; blank if it is omitted. An array gives its first element,
  /// a reference its first cell.
  Value Any(std::size_t index) const;

  double Number(std::size_t index);
  double Number(std::size_t index, double absent) {
    return IsGiven(index) ? Number(index) : absent;
  }
  /// A number without its decimal places.
  double Whole(std::size_t index);
  double Whole(std::size_t index, double absent) { return IsGiven(index) ? Whole(index) : absent; }
  bool Boolean(std::size_t index);
  bool Boolean(std::size_t index, bool absent) { return IsGiven(index) ? Boolean(index) : absent; }
  std::u16string Text(std::size_t index);
  std::u16string Text(std::size_t index, std::u16string_view absent) {
    return IsGiven(index) ? Text(index) : std::u16string(absent);
  }
  /// A value, an array or the cells of a reference with one area as an array; whole columns and
  /// rows only up to the end of the used cells with kUsed. Never null; a failure gives one blank.
  ArrayPtr Array(std::size_t index, RangeExtent extent = RangeExtent::kWhole);
  /// The reference itself; null, without a failure, for what is none.
  const Reference* AsReference(std::size_t index) const;

  /// Makes an error the failure, unless there is one.
  void Fail(ErrorCode error) {
    if (!failure_) failure_ = error;
  }
  /// Fails unless the condition holds.
  void Require(bool condition, ErrorCode otherwise = ErrorCode::kNum) {
    if (!condition) Fail(otherwise);
  }
  bool failed() const { return failure_.has_value(); }
  Operand failure() const { return Value(*failure_); }

 private:
  template <typename T>
  T Taken(const Converted<T>& converted) {
    if (converted.error) Fail(*converted.error);
    return failure_ ? T{} : converted.value;
  }

  const BuiltInCall& call_;
  std::optional<ErrorCode> failure_;
};

/// An array of a shape as a function's result; a single element is a value.
Operand ArrayResult(std::int32_t rows, std::int32_t columns, std::vector<Value> values);

/// The maximum number of elements of an array that a function makes from numbers that it is given;
/// beyond it the result is #VALUE!.
inline constexpr double kLargestMadeArray = 4'000'000;

}  // namespace zavhost
