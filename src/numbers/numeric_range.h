#pragma once

#include <optional>
#include <string>

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

}  // namespace zavrel
