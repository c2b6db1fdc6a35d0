#pragma once
// The check of arguments against the types and the numeric ranges that a function accepts.

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "excel/xxloper.h"

namespace zavrel {

/// One end of a numeric range.
struct Bound {
  double value;
  bool inclusive = true;
};

/// A range of numbers; an absent bound is not checked.
struct NumericRange {
  std::optional<Bound> lower{};
  std::optional<Bound> upper{};

  bool Contains(double number) const;
  /// "[0, 1)"; an absent bound shows as "(-inf" or "inf)".
  std::string Text() const;
};

/// One argument to be checked.
struct Parameter {
  XXloper input;
  std::uint16_t acceptable_types = 0;  // mask of type bits
  NumericRange range{};
  XXloper output{};

  /// "{ inParam=%s, acceptableTypes=%4.4X, range=%s, outParam=? }", for the log.
  std::string Text() const;
};

/// Every output becomes its input, then each is checked in order: its type is acceptable; unless
/// errors are, an array holds none; a number or an integer is finite and within the range. False at
/// the first that fails; the caller answers with the error of its choice. Never throws.
bool CheckParameters(std::span<Parameter> parameters) noexcept;

/// Excel's code of a value that is an error, or of the first error in an array.
std::optional<std::int32_t> FirstError(const XLOPER12& value);

}  // namespace zavrel
