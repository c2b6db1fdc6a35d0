#include "excel/parameter.h"

#include <fmt/format.h>

#include <algorithm>

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

std::string Parameter::Text() const {
  return fmt::format("{{ inParam={}, acceptableTypes={:04X}, range={}, outParam=? }}",
                     ValueText(input.record()), acceptable_types, range.Text());
}

bool CheckParameters(std::span<Parameter> parameters) noexcept {
  for (Parameter& parameter : parameters) parameter.output = parameter.input;
  return std::all_of(parameters.begin(), parameters.end(), IsAcceptable);
}

}  // namespace zavrel
