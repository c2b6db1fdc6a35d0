#pragma once
// The check of arguments against the types and the numeric ranges that a function accepts.

#include <cstdint>
#include <span>
#include <string>

#include "excel/xxloper.h"
#include "numbers/numeric_range.h"

namespace zavrel {

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

}  // namespace zavrel
