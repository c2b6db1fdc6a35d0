// Numbers in the placeholders of a format.

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "host/workbook/decimal_digits.h"
#include "host/workbook/number_format.h"

namespace zavhost {
namespace {

using Kind = FormatTokenKind;
using Tokens = std::span<const FormatToken>;

std::size_t Find(Tokens tokens, Kind kind) {
  const auto found = std::find_if(tokens.begin(), tokens.end(),
                                  [kind](const FormatToken& token) { return token.kind == kind; });
  return static_cast<std::size_t>(found - tokens.begin());
}

int Placeholders(Tokens tokens) {
  return static_cast<int>(std::count_if(tokens.begin(), tokens.end(), [](const FormatToken& token) {
    return token.kind == Kind::kDigit;
  }));
}

/// The tokens before and behind a point, a bar or an exponent.
struct Split {
  Tokens before;
  Tokens behind;

  Split(Tokens tokens, Kind kind)
      : before(tokens.first(Find(tokens, kind))),
        behind(tokens.subspan(std::min(before.size() + 1, tokens.size()))) {}
};

/// Fills the placeholders of a number that is already rounded to them.
class DigitWriter {
 public:
  DigitWriter(const DecimalDigits& digits, bool has_separators, std::u16string& out)
      : digits_(digits), has_separators_(has_separators), out_(out) {}

  void Write(Tokens tokens) {
    const Split parts(tokens, Kind::kPoint);
    WriteWhole(parts.before);
    if (parts.before.size() == tokens.size()) return;
    if (Placeholders(parts.before) == 0) {
      for (int place = digits_.WholeDigits() - 1; place >= 0; --place) WritePlace(place, u'0');
    }
    out_ += u'.';
    WriteDecimals(parts.behind);
  }

 private:
  /// The first placeholder takes all digits that have none. Behind a 0, the others are zeros too.
  void WriteWhole(Tokens tokens) {
    int place = Placeholders(tokens);
    bool is_first = true;
    bool is_behind_zero = false;
    for (const FormatToken& token : tokens) {
      if (token.kind != Kind::kDigit) {
        out_ += token.text;
        continue;
      }
      --place;
      is_behind_zero = is_behind_zero || token.text == u"0";
      const int from = is_first ? std::max(place, digits_.WholeDigits() - 1) : place;
      for (int at = from; at >= place; --at)
        WritePlace(at, is_behind_zero ? u'0' : token.text.front());
      is_first = false;
    }
  }

  /// A digit and the comma behind it, or what stands for a leading zero.
  void WritePlace(int place, char16_t placeholder) {
    const bool is_digit = place < digits_.WholeDigits();
    if (!is_digit && placeholder == u'#') return;
    const bool is_blank = !is_digit && placeholder == u'?';
    out_ += is_blank ? u' ' : static_cast<char16_t>(digits_.At(place));
    if (has_separators_ && place > 0 && place % 3 == 0) out_ += is_blank ? u' ' : u',';
  }

  void WriteDecimals(Tokens tokens) {
    int zeros = 0;  // the number of decimal places that are always shown
    int places = 0;
    for (const FormatToken& token : tokens) {
      places += token.kind == Kind::kDigit ? 1 : 0;
      if (token.kind == Kind::kDigit && token.text == u"0") zeros = places;
    }
    const int shown = std::max(zeros, digits_.DecimalPlaces());
    int place = 0;
    for (const FormatToken& token : tokens) {
      if (token.kind != Kind::kDigit) {
        out_ += token.text;
      } else if (++place <= shown) {
        out_ += static_cast<char16_t>(digits_.At(-place));
      } else if (token.text == u"?") {
        out_ += u' ';
      }
    }
  }

  const DecimalDigits& digits_;
  bool has_separators_;
  std::u16string& out_;
};

void WriteNumber(double whole, Tokens tokens, std::u16string& out) {
  DigitWriter(DecimalDigits(whole), false, out).Write(tokens);
}

/// The tokens of a fraction: "# ??/100" has a whole part "#", a blank, "??" and "100".
struct FractionTokens {
  Tokens whole;  // with what stands between it and the numerator; may have no placeholder
  Tokens numerator;
  Tokens denominator;
  Tokens rest;
  double fixed_denominator = 0.0;  // 0 if there is none

  explicit FractionTokens(Tokens tokens) {
    const Split parts(tokens, Kind::kBar);
    std::size_t begin = parts.before.size();
    while (begin > 0 && parts.before[begin - 1].kind == Kind::kDigit) --begin;
    whole = parts.before.first(begin);
    numerator = parts.before.subspan(begin);
    std::size_t end = 0;
    bool is_fixed = false;
    for (; end < parts.behind.size() && end < 9; ++end) {
      const FormatToken& token = parts.behind[end];
      const char16_t unit = token.text.empty() ? u' ' : token.text.front();
      const bool is_written = token.kind == Kind::kLiteral && unit >= u'1' && unit <= u'9';
      if (!is_written && token.kind != Kind::kDigit) break;
      is_fixed = is_fixed || is_written;
      fixed_denominator = fixed_denominator * 10.0 + (is_written ? unit - u'0' : 0);
    }
    if (!is_fixed) fixed_denominator = 0.0;
    denominator = parts.behind.first(end);
    rest = parts.behind.subspan(end);
  }

  double LargestDenominator() const {
    return std::pow(10.0, std::min<double>(static_cast<double>(denominator.size()), 7)) - 1;
  }
};

struct Ratio {
  double numerator;
  double denominator;
};

/// The last convergent of the number's continued fraction whose denominator is small enough.
Ratio Convergent(double number, double largest_denominator) {
  constexpr double kNegligible = 5e-8;
  Ratio last{1.0, 0.0};
  Ratio current{std::floor(number), 1.0};
  double rest = number - current.numerator;
  while (rest > kNegligible) {
    const double inverse = 1.0 / rest;
    const double term = std::floor(inverse);
    const Ratio next{term * current.numerator + last.numerator,
                     term * current.denominator + last.denominator};
    if (next.denominator > largest_denominator) break;
    last = current;
    current = next;
    rest = inverse - term;
  }
  return current;
}

/// Denominators are aligned to the left, so the placeholders that are left over come behind.
void WriteDenominator(double denominator, Tokens tokens, std::u16string& out) {
  std::u16string written;
  WriteNumber(denominator, tokens, written);
  const std::size_t blanks = std::min(written.find_first_not_of(u' '), written.size());
  out.append(written, blanks).append(blanks, u' ');
}

/// A section with E+ or E-. With several placeholders for the whole part, the exponent is a
/// multiple of their number.
std::u16string Scientific(double magnitude, const FormatSection& section) {
  const Split parts(section.tokens, Kind::kExponent);
  const Split mantissa(parts.before, Kind::kPoint);
  const int whole = Placeholders(mantissa.before);
  const int step = std::max(whole, 1);
  DecimalDigits digits(magnitude);
  digits.Scale(section.scale);
  int exponent = 0;
  // Rounding can make one digit more, and with it another exponent.
  for (int pass = 0; pass < 2 && !digits.IsZero(); ++pass) {
    const int first = digits.WholeDigits() - (whole == 0 ? 0 : 1);
    const int shift = static_cast<int>(std::floor(static_cast<double>(first) / step)) * step;
    digits.Scale(-shift);
    exponent += shift;
    digits.RoundTo(Placeholders(mantissa.behind));
  }
  std::u16string shown;
  DigitWriter(digits, section.has_thousands_separators, shown).Write(parts.before);
  shown += u'E';
  if (exponent < 0)
    shown += u'-';
  else if (section.tokens[parts.before.size()].text == u"+")
    shown += u'+';
  WriteNumber(std::abs(exponent), parts.behind, shown);
  return shown;
}

struct MixedNumber {
  double whole;
  Ratio ratio;
};

/// The number as the whole part, if it is shown, and the nearest fraction.
MixedNumber MixedNumberOf(double number, const FractionTokens& parts) {
  const bool has_whole = Placeholders(parts.whole) > 0;
  const double whole = has_whole ? std::floor(number) : 0.0;
  const double fraction = number - whole;
  const double denominator = parts.fixed_denominator;
  const Ratio ratio = denominator > 0.0 ? Ratio{std::round(fraction * denominator), denominator}
                                        : Convergent(fraction, parts.LargestDenominator());
  if (has_whole && ratio.numerator == ratio.denominator)
    return {whole + 1.0, {0.0, ratio.denominator}};
  return {whole, ratio};
}

/// The whole part with what stands behind it. Without a fraction, a zero is shown, though # alone
/// would leave it out.
void WriteWholePart(double whole, Tokens tokens, bool has_fraction, std::u16string& out) {
  std::vector<FormatToken> written(tokens.begin(), tokens.end());
  const auto last = std::find_if(written.rbegin(), written.rend(), [](const FormatToken& token) {
    return token.kind == Kind::kDigit;
  });
  if (!has_fraction && last != written.rend()) last->text = u"0";
  WriteNumber(whole, written, out);
}

/// A section with the bar of a fraction.
std::optional<std::u16string> Fraction(double magnitude, const FormatSection& section) {
  const FractionTokens parts(section.tokens);
  if (parts.numerator.empty() || parts.denominator.empty()) return std::nullopt;
  magnitude *= std::pow(10.0, section.scale);
  const auto [whole, ratio] = MixedNumberOf(magnitude, parts);
  if (!std::isfinite(ratio.numerator)) return std::nullopt;  // beyond the doubles
  const bool has_whole = Placeholders(parts.whole) > 0;
  const bool has_fraction = !has_whole || ratio.numerator > 0.0;

  std::u16string shown;
  WriteWholePart(whole, parts.whole, has_fraction, shown);
  if (!has_fraction && parts.numerator.back().text != u"0") {
    shown.append(parts.numerator.size() + 1 + parts.denominator.size(), u' ');
  } else {
    WriteNumber(ratio.numerator, parts.numerator, shown);
    shown += u'/';
    if (parts.fixed_denominator > 0.0) {
      for (const FormatToken& token : parts.denominator) shown += token.text;
    } else {
      WriteDenominator(ratio.denominator, parts.denominator, shown);
    }
  }
  for (const FormatToken& token : parts.rest) shown += token.text;
  return shown;
}

}  // namespace

std::optional<std::u16string> FormattedNumber(double magnitude, const FormatSection& section) {
  if (section.Has(Kind::kExponent)) return Scientific(magnitude, section);
  if (section.Has(Kind::kBar)) return Fraction(magnitude, section);
  const Split parts(section.tokens, Kind::kPoint);
  DecimalDigits digits(magnitude);
  digits.Scale(section.scale);
  digits.RoundTo(Placeholders(parts.behind));
  std::u16string shown;
  DigitWriter(digits, section.has_thousands_separators, shown).Write(section.tokens);
  return shown;
}

}  // namespace zavhost
