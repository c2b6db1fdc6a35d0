#pragma once
// Checks arguments against the types and numeric ranges that a function accepts.

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

/// Copies every input to its output, then checks each in order: its type is acceptable; an array
/// holds no error unless errors are acceptable; a number or an integer is finite and within the
/// range. False at the first that fails; the caller chooses the error to return. Never throws.
bool CheckParameters(std::span<Parameter> parameters) noexcept;

}  // namespace zavrel
