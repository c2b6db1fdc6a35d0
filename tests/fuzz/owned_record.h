#pragma once

#include "excel/xloper12.h"

/// A record of the fuzzed add-in, which counts how often it is freed.
struct OwnedRecord {
  XLOPER12 record{};
  int freed = 0;
};
