#pragma once
// What the functions of texts share.

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "host/formula/argument_reader.h"

namespace zavhost {

/// A text as a function's result; #VALUE! beyond the length of a cell's text.
inline Operand TextResult(std::u16string text) {
  if (text.size() > kLongestText) return Value(ErrorCode::kValue);
  return Value(Text(std::move(text)));
}

/// A count from 0 up as an index into a text of some length: at most that length.
inline std::size_t UpTo(double count, std::size_t length) {
  return static_cast<std::size_t>(std::min(count, static_cast<double>(length)));
}

}  // namespace zavhost
