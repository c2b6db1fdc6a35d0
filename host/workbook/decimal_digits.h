#pragma once
// The decimal digits of a number as Excel shows and rounds them.

#include <string>
#include <string_view>

namespace zavhost {

/// A number from 0 up in decimal notation, with at most 15 significant digits, so that 2.675 rounds
/// to the 2.68 that the user expects.
class DecimalDigits {
 public:
  /// The absolute value of a finite number.
  explicit DecimalDigits(double number);

  /// Multiplies by a power of ten.
  void Scale(int power) { point_ += power; }
  /// Rounds half up to so many decimal places; negative ones are left of the decimal point.
  void RoundTo(int places);

  /// Without zeros at the ends; empty for 0.
  const std::string& digits() const { return digits_; }
  bool IsZero() const { return digits_.empty(); }
  /// The number of digits before the decimal point; not positive if the first significant digit
  /// comes after it.
  int WholeDigits() const { return IsZero() ? 0 : point_; }
  /// The number of decimal places up to the last digit that is not zero.
  int DecimalPlaces() const;
  /// The digit at a place: 0 for ones, 1 for tens, -1 for tenths.
  char At(int place) const;

 private:
  std::string digits_;
  int point_ = 0;  // the position of the decimal point in them
};

}  // namespace zavhost
