#include "excel/parameter.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>

#include "excel/value_text.h"

namespace zavrel {
namespace {

bool IsAcceptable(const Parameter& parameter) {
  const XXloper& value = parameter.output;
  const XLOPER12& record = value.record();
  if (!value.Is(parameter.acceptable_types)) return false;
  if ((parameter.acceptable_types & xltypeErr) == 0 && FirstError(record)) return false;
  if (value.Is(xltypeNum)) return parameter.range.Contains(record.val.num);
  if (value.Is(xltypeInt)) return parameter.range.Contains(record.val.w);
  return true;
}

}  // namespace

bool NumericRange::Contains(double number) const {
  if (!std::isfinite(number)) return false;
  if (lower && (lower->inclusive ? number < lower->value : number <= lower->value)) return false;
  if (upper && (upper->inclusive ? number > upper->value : number >= upper->value)) return false;
  return true;
}

std::string NumericRange::Text() const {
  std::string text =
      lower ? fmt::format("{}{}", lower->inclusive ? '[' : '(', lower->value) : "(-inf";
  text += upper ? fmt::format(", {}{}", upper->value, upper->inclusive ? ']' : ')') : ", inf)";
  return text;
}

std::string Parameter::Text() const {
  return fmt::format("{{ inParam={}, acceptableTypes={:04X}, range={}, outParam=? }}",
                     ValueText(input.record()), acceptable_types, range.Text());
}

bool CheckParameters(std::span<Parameter> parameters) noexcept {
  for (Parameter& parameter : parameters) parameter.output = parameter.input;
  return std::all_of(parameters.begin(), parameters.end(), IsAcceptable);
}

std::optional<std::int32_t> FirstError(const XLOPER12& value) {
  if (TypeOf(value) == xltypeErr) return value.val.err;
  for (const XLOPER12& element : ElementsIn(value)) {
    if (TypeOf(element) == xltypeErr) return element.val.err;
  }
  return std::nullopt;
}

}  // namespace zavrel
