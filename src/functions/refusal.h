#pragma once

#include "addin/worksheet_function.h"
#include "data/get_parameters.h"

namespace zavrel {

/// What a worksheet function returns when its arguments were not accepted.
inline WorksheetResult Refusal(const Parameters& parameters) {
  if (parameters.uncalculated()) return WorksheetResult::Uncalculated(parameters.failure());
  return parameters.failure();
}

}  // namespace zavrel
