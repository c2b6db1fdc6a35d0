#include "host/workbook/decimal_digits.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace zavhost {
namespace {

constexpr int kShownDigits = 15;
// So many that a number between two of fifteen digits is seen to be exactly there, which is rounded
// away from zero.
constexpr int kExactDigits = 40;

}  // namespace

DecimalDigits::DecimalDigits(double number) {
  if (number == 0.0) return;
  char shown[64];
  const auto end = std::to_chars(shown, shown + sizeof shown, std::fabs(number),
                                 std::chars_format::scientific, kExactDigits - 1);
  const std::string_view text(shown, static_cast<std::size_t>(end.ptr - shown));
  const std::size_t mark = text.find('e');
  digits_.append(text.substr(0, 1)).append(text.substr(2, mark - 2));
  int exponent = 0;
  std::from_chars(shown + mark + (text[mark + 1] == '+' ? 2 : 1), end.ptr, exponent);
  point_ = exponent + 1;
  RoundTo(kShownDigits - point_);
}

void DecimalDigits::RoundTo(int places) {
  const int kept = point_ + places;
  if (kept >= static_cast<int>(digits_.size())) return;
  if (kept < 0) {
    digits_.clear();
    return;
  }
  const auto end = static_cast<std::size_t>(kept);
  const bool is_up = digits_[end] >= '5';
  digits_.resize(end);
  if (is_up) {
    digits_.erase(digits_.find_last_not_of('9') + 1);
    if (digits_.empty()) {
      digits_.push_back('0');
      ++point_;
    }
    ++digits_.back();
  }
  digits_.erase(digits_.find_last_not_of('0') + 1);
}

int DecimalDigits::DecimalPlaces() const {
  return IsZero() ? 0 : std::max(0, static_cast<int>(digits_.size()) - point_);
}

char DecimalDigits::At(int place) const {
  const int index = point_ - 1 - place;
  const bool is_stored = index >= 0 && index < static_cast<int>(digits_.size());
  return is_stored ? digits_[static_cast<std::size_t>(index)] : '0';
}

}  // namespace zavhost
